#include "Index/IkDeleterVector.h"

#include <climits>

#include "IkTestTools.h"

namespace vandrelle {
namespace {

class IkDeleterVectorTest : public DirectoryTest {
 protected:
  std::unique_ptr<IkDeleterVector> bound(int totalNumDocs, int readOnly) {
    return std::unique_ptr<IkDeleterVector>(
        IkDeleterVector::Bind(root_.c_str(), totalNumDocs, readOnly));
  }
  std::string vector() const { return bytesOf(root_ + ".xk"); }

  const std::string root_ = directory_ / "deleter";
};

TEST_F(IkDeleterVectorTest, ChangesLieInTheShadowUntilTheyAreFrozen) {
  EXPECT_EQ(bound(0, 1), nullptr);
  auto changed = bound(11, 0);
  for (int doc : {0, 9, 0, 10}) changed->deleteDocument(doc);
  EXPECT_EQ(changed->numDeleted(), 3);
  EXPECT_EQ(bound(0, 1), nullptr);
  changed->done();
  EXPECT_EQ(bytesOf(root_ + ".xk.tmp"), std::string("\0\0\0\xB\0\0\0\3\x80\x60", 10));
  changed->freeze();
  EXPECT_EQ(vector(), std::string("\0\0\0\xB\0\0\0\3\x80\x60", 10));
  EXPECT_FALSE(SysTools::fileExists((root_ + ".xk.tmp").c_str()));
  EXPECT_TRUE(changed->isDeleted(9));
  EXPECT_EQ(thrownBy([&] { changed->deleteDocument(1); }),
            "Ik: Cannot delete document from read-only deleter.");

  // What isn't frozen is dropped; a vector that grows keeps what it had.
  bound(11, 0)->deleteDocument(2);
  EXPECT_FALSE(SysTools::fileExists((root_ + ".xk.tmp").c_str()));
  changed = bound(3, 0);
  changed->grow(20);
  changed->deleteDocument(19);
  changed->done();
  changed->freeze();
  EXPECT_EQ(vector(), std::string("\0\0\0\x14\0\0\0\4\x80\x60\x10", 11));
}

// The number of documents itself passes: with a bit in the last byte it can be
// deleted, without there is nothing to delete.
TEST_F(IkDeleterVectorTest, NumbersAtTheEnd) {
  const struct {
    int documents, doc, deleted;
    const char* thrown;
  } cases[] = {
      {7, 7, 1, ""},
      {8, 8, 0, ""},
      {7, 8, 0, "Ik: Attempt to delete document (8) which isn't in index."},
      {7, -1, 0, "Ik: Attempt to delete document (-1) which isn't in index."},
      {0, INT_MAX, 0, "Ik: Attempt to delete document (2147483647) which isn't in index."},
  };
  for (const auto& c : cases) {
    const std::unique_ptr<IkDeleterVector> vector(
        IkDeleterVector::Create(root_.c_str(), c.documents, 0));
    EXPECT_EQ(thrownBy([&] { vector->deleteDocument(c.doc); }), c.thrown);
    EXPECT_EQ(vector->numDeleted(), c.deleted) << c.doc;
    EXPECT_EQ(vector->isDeleted(c.doc), c.deleted) << c.doc;
  }
}

TEST_F(IkDeleterVectorTest, DamagedFiles) {
  const std::string sound("\0\0\0\xB\0\0\0\3\x80\x60", 10);
  std::vector<std::string> files;
  for (std::size_t size = 0; size < sound.size(); ++size) files.push_back(sound.substr(0, size));
  const std::size_t cut = files.size();
  for (std::size_t bit = 0; bit < 8 * sound.size(); ++bit) {
    files.push_back(flipped(sound, bit / 8, 1 << bit % 8));
  }
  files.push_back(noise(1 << 20));
  for (std::size_t i = 0; i < files.size(); ++i) {
    writeBytes(root_ + ".xk", files[i]);
    for (int readOnly : {0, 1}) {
      std::unique_ptr<IkDeleterVector> vector;
      const std::string thrown = thrownBy([&] {
        vector = bound(5, readOnly);
        for (int doc : {-1, 0, 10, 11, 12, 4000, INT_MAX, INT_MIN}) vector->isDeleted(doc);
      });
      if (i < cut) {
        EXPECT_NE(thrown, "") << i;
      }
      if (thrown != "" && files[i].size() > 0) {
        EXPECT_EQ(thrown.substr(0, 38), "Ik: The list of deleted documents '" + root_.substr(0, 3));
      }
    }
  }
}

}  // namespace
}  // namespace vandrelle
