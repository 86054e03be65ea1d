// The field database: bytes of the slow and the fast form, reading, limits; and what
// fields are indexed.

#include "Document/DcFieldBag.h"

#include "Document/DcFieldParser.h"
#include "Document/DcFieldsBinder.h"
#include "Document/DcFieldsCreator.h"
#include "DocumentFixture.h"
#include "Fun/FdBag.h"
#include "Index/IkMergeDeleter.h"

namespace vandrelle {
namespace {

class DcFieldsTest : public DirectoryTest {
 protected:
  std::string slurp(const char* suffix) const { return fileBytes(root + suffix); }
  // Document 0: title A, url u0; document 1: none; document 2: url u2, title of
  // 2,000 letters.
  void fill() const {
    DcFieldsCreator creator(root.c_str(), 0);
    creator.add("title", "A");
    creator.add("url", "u0");
    creator.endDoc();
    creator.endDoc();
    creator.add("url", "u2");
    creator.add("title", std::string(2000, 'x').c_str());
    creator.endDoc();
    creator.flush();
    EXPECT_TRUE(creator.valid());
    EXPECT_EQ(creator.numDocuments(), 3);
  }
  static std::string fieldsOf(DcFieldsBinder* binder, int doc) {
    std::string all;
    EXPECT_TRUE(binder->gotoDoc(doc));
    for (DcFieldInfo field; binder->getField(field);) {
      all +=
          std::string(field.name.get()) + "=" + std::string(field.value.get()).substr(0, 5) + ";";
    }
    return all;
  }

  const std::string root = directory_ / "fields";
};

TEST_F(DcFieldsTest, SlowFormBytes) {
  fill();
  EXPECT_EQ(slurp(".fld.nam"), std::string("title\0url\0", 10));
  EXPECT_EQ(slurp(".fld.val"),
            std::string("A\0u0\0u2\0", 8) + std::string(2000, 'x') + std::string(1, '\0'));
  EXPECT_EQ(slurp(".fld.ptr"), std::string("\0\0\0\0\xFF\xFF\xFF\xFF\0\0\0\x14", 12));
  EXPECT_EQ(slurp(".fld.lst"), std::string("\x80\0\0\0\0\0\0\0\0\0"
                                           "\0\x06\0\0\0\0\0\0\0\x02"
                                           "\x80\x06\0\0\0\0\0\0\0\x05"
                                           "\0\0\0\0\0\0\0\0\0\x08",
                                           40));
}

TEST_F(DcFieldsTest, BothFormsReadBackAlike) {
  fill();
  {
    DcFieldsBinder slow(root.c_str());
    ASSERT_TRUE(slow.valid());
    EXPECT_EQ(fieldsOf(&slow, 0), "title=A;url=u0;");
    EXPECT_EQ(fieldsOf(&slow, 1), "");
    EXPECT_EQ(fieldsOf(&slow, 2), "url=u2;title=xxxxx;");
    EXPECT_EQ(taken(slow.retrieve(2, "title")), std::string(1023, 'x'));
    EXPECT_EQ(taken(slow.retrieve(1, "title")), "(null)");
    EXPECT_EQ(taken(slow.retrieve(0, "summary")), "(null)");
    EXPECT_FALSE(slow.gotoDoc(3));
    EXPECT_FALSE(slow.gotoDoc(-1));
    slow.equate("address", "url");
    EXPECT_EQ(taken(slow.retrieve(0, "address")), "u0");
  }
  DcFieldBag bag(1);
  for (const char* name : {"url", "title", "summary"}) bag.Add(name, 0);
  ASSERT_TRUE(DcFieldsBinder::createFastFiles(&bag, nullptr, nullptr, root.c_str(), nullptr));
  EXPECT_EQ(slurp(".fnam"), std::string("url\0title\0summary\0", 18));
  EXPECT_EQ(slurp(".fidx"), std::string("\0\0\0\0\0"
                                        "\0\0\0\0\x06"
                                        "\0\0\0\0\x09",
                                        15));
  EXPECT_EQ(slurp(".fdat"), std::string("u0\0A\0\0"
                                        "\0\0\0"
                                        "u2\0",
                                        12) +
                                std::string(1023, 'x') + std::string(2, '\0'));
  // A removal that was cut short.
  ASSERT_TRUE(std::filesystem::remove(root + ".fld.nam"));
  DcFieldsBinder fast(root.c_str());
  ASSERT_TRUE(fast.valid());
  EXPECT_EQ(fast.numDocuments(), 3);
  EXPECT_EQ(fieldsOf(&fast, 0), "url=u0;title=A;summary=;");
  EXPECT_EQ(taken(fast.retrieve(1, "title")), "");
  EXPECT_EQ(taken(fast.retrieve(2, "title")), std::string(1023, 'x'));
  EXPECT_EQ(taken(fast.retrieve(2, "other")), "(null)");
}

TEST_F(DcFieldsTest, FastFormThatCannotBeIsRefused) {
  fill();
  const std::string url("url\0", 4);
  const struct {
    int documents;
    std::string names;
    bool taken;
  } cases[] = {{3, url, true},
               {2, url, false},
               {3, "", false},
               {3, "url", false},
               {3, url + '\0', false},
               {3, std::string(32767, 'n') + '\0', true},
               {3, std::string(32768, 'n') + '\0', false},
               {3, std::string(30 << 20, '\0'), false}};
  writeFile(root + ".fdat", std::string(10, '\0'));
  for (const auto& c : cases) {
    writeFile(root + ".fidx", std::string(static_cast<std::size_t>(5 * c.documents), '\0'));
    writeFile(root + ".fnam", c.names);
    DcFieldsBinder binder(root.c_str());
    EXPECT_EQ(binder.fastFilesOn(root.c_str()), c.taken) << c.documents << c.names.size();
    if (!c.taken) {
      EXPECT_EQ(taken(binder.retrieve(0, "url")), "u0");
    }
  }
}

TEST_F(DcFieldsTest, LeftoverFilesAndNamesPastTheLimit) {
  fill();
  EXPECT_FALSE(DcFieldsCreator(root.c_str(), 0).valid());
  {
    DcFieldsCreator more(root.c_str(), 1);
    ASSERT_TRUE(more.valid());
    EXPECT_EQ(more.numDocuments(), 3);
    // 10 bytes of names stand; this brings 32,767.
    for (int i = 0; i < 31; ++i)
      more.add(std::string(1000 + static_cast<std::size_t>(i), 'n').c_str(), "");
    std::size_t size = 10;
    for (std::size_t i = 0; i < 31; ++i) size += 1001 + i;
    more.add(std::string(32767 - size - 1, 'm').c_str(), "");
    more.add("last", "v");
    EXPECT_TRUE(more.valid());
    more.add("beyond", "v");
    EXPECT_FALSE(more.valid());
  }
}

// Leaves document 0 out.
class OmitsTheFirst : public IkMergeDeleter {
 public:
  int newChunk(int chunk) override { return chunk - 1; }
};

TEST_F(DcFieldsTest, CopiesAndFastFormsFollowEachOther) {
  fill();
  const std::string other = root + "2";
  ASSERT_TRUE(DcFieldsCreator::copy(root.c_str(), other.c_str()));
  {
    DcFieldsBinder binder(other.c_str());
    EXPECT_EQ(fieldsOf(&binder, 2), "url=u2;title=xxxxx;");
  }
  DcFieldBag fields(0, 0);
  fields.Add("url", 0);
  fields.Add("title", 0);
  ASSERT_TRUE(
      DcFieldsBinder::createFastFiles(&fields, nullptr, nullptr, root.c_str(), other.c_str()));
  ASSERT_TRUE(DcFieldsCreator::remove(root.c_str()));
  EXPECT_FALSE(DcFieldsCreator::copy(root.c_str(), other.c_str()));
  ASSERT_TRUE(DcFieldsCreator::remove(other.c_str()));
  OmitsTheFirst omits;
  EXPECT_TRUE(DcFieldsCreator::mergeFastFields(other.c_str(), root.c_str(), nullptr));
  EXPECT_TRUE(DcFieldsCreator::mergeFastFields(other.c_str(), root.c_str(), &omits));
  const std::string rest = std::string(2, '\0') + std::string(1023, 'x') + '\0' + "u2" + '\0';
  EXPECT_EQ(slurp(".fdat"), std::string("A\0u0\0", 5) + rest + rest);
  EXPECT_EQ(slurp(".fidx"), std::string("\0\0\0\0\0"
                                        "\0\0\0\0\5"
                                        "\0\0\0\0\7"
                                        "\0\0\0\4\xA"
                                        "\0\0\0\4\xC",
                                        25));
  // A form that ends within a document adds what it has whole.
  writeFile(other + ".fdat", "u0");
  EXPECT_FALSE(DcFieldsCreator::mergeFastFields(other.c_str(), root.c_str(), nullptr));
  EXPECT_EQ(slurp(".fidx").size(), 25u);
}

TEST_F(DcFieldsTest, MergeInTheMiddlePermuteAndDamage) {
  fill();
  const std::string other = root + "2";
  {
    DcFieldsCreator creator(other.c_str(), 0);
    creator.add("title", "B");
    creator.endDoc();
    creator.flush();
  }
  ASSERT_TRUE(DcFieldsCreator::merge(other.c_str(), root.c_str(), nullptr, nullptr, 1));
  ASSERT_TRUE(DcFieldsCreator::permute([](uint32 i) { return 3 - i; }, root.c_str()));
  {
    DcFieldsBinder binder(root.c_str());
    ASSERT_EQ(binder.numDocuments(), 4);
    EXPECT_EQ(fieldsOf(&binder, 3), "title=A;url=u0;");
    EXPECT_EQ(fieldsOf(&binder, 2), "title=B;");
    EXPECT_EQ(fieldsOf(&binder, 1), "");
    EXPECT_EQ(fieldsOf(&binder, 0), "url=u2;title=xxxxx;");
  }
  const std::string list = slurp(".fld.lst");
  writeFile(root + ".fld.lst", list.substr(0, 25));
  DcFieldsBinder cut(root.c_str());
  cut.gotoDoc(0);
  for (DcFieldInfo field; cut.getField(field);) {
  }
  EXPECT_FALSE(cut.valid());
}

TEST(DcFieldParser, WeightsOfFieldTexts) {
  DcFieldParser parser;
  parser.AddFieldToBeIndexed("once", 1);
  parser.AddFieldToBeIndexed("twice", 2);
  parser.AddFieldToBeIndexed("never", 0);
  EXPECT_EQ(taken(parser.getFieldText("once", "a b")), "a b");
  EXPECT_EQ(taken(parser.getFieldText("twice", "a b")), "a b a b ");
  EXPECT_EQ(taken(parser.getFieldText("never", "a b")), "");
  EXPECT_EQ(taken(parser.getFieldText("other", "a b")), "(null)");
  // A filter of the field database may answer null.
  EXPECT_EQ(taken(parser.getFieldText("twice", nullptr)), "(null)");
  parser.AddFieldToBeIndexed("::all", 5);
  EXPECT_EQ(taken(parser.getFieldText("twice", "a b")), "a b");
  EXPECT_EQ(taken(parser.getFieldText("other", "a b")), "a b");
}

TEST(DcFieldParser, ConstraintFields) {
  DcFieldParser parser;
  EXPECT_FALSE(parser.hasConstraintFields());
  parser.AddConstraintField("section");
  EXPECT_TRUE(parser.ConstraintField("section"));
  EXPECT_FALSE(parser.ConstraintField("sect"));
  EXPECT_FALSE(parser.ConstraintField("sections"));
  parser.AddConstraintField("::all");
  EXPECT_TRUE(parser.ConstraintField("anything"));
  const std::unique_ptr<FdBag> values(parser.getFieldValues("section", "One value"));
  EXPECT_EQ(values->numElements(), 1);
  EXPECT_TRUE(values->find("One value", 10, nullptr, nullptr));
}

}  // namespace
}  // namespace vandrelle
