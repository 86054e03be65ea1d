#include "Driver/DocumentIndex.h"

#include "Document/DcMetaIndexCreator.h"
#include "Document/IntakeFixture.h"
#include "Driver/ExclusionFile.h"
#include "Driver/VymTypes.h"
#include "Fun/Fd.h"
#include "Fun/FdWrapper.h"
#include "Tool/NameManager.h"

namespace vandrelle {
namespace {

class DocumentIndexTest : public IntakeTest {
 protected:
  DocumentIndexTest() : root_(path("root")), logger_(nullptr), arguments_(Fd::Queue()) {}

  // Runs the stage over the positional arguments.
  void list(const char* exclude, const char* filelist, const char* userlist, int mode) {
    NameManager name(root_.c_str(), 20);
    FdSStream rest(arguments_.iterator());
    VymTypes types(root_.c_str(), 0);
    buildDocumentIndex(&name, &rest, exclude, filelist, userlist, nullptr, mode, 0, 2, &logger_,
                       nullptr, nullptr, nullptr, &types);
  }

  // Type of each document, in order.
  std::vector<int32_t> types() {
    const std::vector<int32_t> rows = integers(root_ + ".idx");
    std::vector<int32_t> found;
    for (std::size_t at = 0; at + 18 < rows.size(); at += 3) found.push_back(rows[at]);
    return found;
  }

  std::string root_;
  VandrelleLogIostream logger_;
  FdSBag arguments_;
};

TEST_F(DocumentIndexTest, ExclusionFileEntries) {
  const struct {
    const char* line;
    const char* pattern;
    int content;
  } cases[] = {{"\\.txt$ TEXT", "\\.txt$", 1},
               {"a\thtml", "a", 2},
               {"a \t texture", "a", 1},
               {"a PDF", "a", 15},
               {"a PDFs", "a", -1},
               {"a PDF ", "a", -1},
               {"a RTF", "a", -1},
               {"alone", "alone", -1},
               {"blank ", "blank", -1},
               {" TEXT", "", 1},
               {"", "", -1},
               {"last without newline HTML", "last", -1}};
  std::string text;
  for (const auto& one : cases) text += std::string(one.line) + "\n";
  text.pop_back();
  const std::string file = write("excl", text);
  excludeObj entries(file.c_str());
  ASSERT_TRUE(entries.okFile());
  for (const auto& one : cases) {
    ASSERT_TRUE(entries.nextLine()) << one.line;
    EXPECT_STREQ(entries.getName(), one.pattern) << one.line;
    EXPECT_EQ(entries.contentType(), one.content) << one.line;
  }
  EXPECT_FALSE(entries.nextLine());
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(DocumentIndexTest, ExclusionLineLengthLimit) {
  const std::string file =
      write("excl", std::string(2047, 'a') + "\nb\n" + std::string(2048, 'c') + "\nnever\n");
  excludeObj entries(file.c_str());
  ASSERT_TRUE(entries.nextLine());
  EXPECT_EQ(std::string(entries.getName()).size(), 2047u);
  ASSERT_TRUE(entries.nextLine());
  EXPECT_STREQ(entries.getName(), "b");
  EXPECT_FALSE(entries.nextLine());
  EXPECT_TRUE(logged("0:Exclusion file " + file +
                     ", line 3: longer than 2047 characters; it and all behind it are ignored."));
  EXPECT_FALSE(excludeObj(path("missing").c_str()).okFile());
  EXPECT_FALSE(excludeObj(directory_.path().c_str()).okFile());
}

// Which of a fixed set of files is taken, and as what.
TEST_F(DocumentIndexTest, TypesByMode) {
  const char* names[] = {"a.html", "b.HTM",     "c.txt",        "d.pdf",  "e.txt~",
                         ".hide",  "VD-1.html", "f.htm_backup", "g.jpeg", "h.bin"};
  for (const char* name : names) {
    const std::string text = std::string(name) == "h.bin" ? std::string(1024, '\x01') : "<p>text";
    arguments_.insert(write(std::string("in/") + name, text).c_str());
  }
  const std::string exclude = write("excl", "c\\.t text\n(broken\nb\\.H\n\\.pdf$ PDF\n");
  const struct {
    int mode;
    const char* exclude;
    std::vector<int32_t> types;
  } cases[] = {{1, nullptr, {2048, 2048, 2048}},    {2, nullptr, {1}},
               {3, nullptr, {2048, 2048, 1, 2048}}, {4, nullptr, {15}},
               {0, exclude.c_str(), {1, 15}},       {3, exclude.c_str(), {2048, 1, 15, 2048}}};
  for (const auto& one : cases) {
    for (const char* suffix : {".idx", ".lst", ".lpt", "_one.idx"}) {
      std::filesystem::remove(root_ + suffix);
    }
    list(one.exclude, nullptr, nullptr, one.mode);
    EXPECT_EQ(types(), one.types) << one.mode;
  }
}

TEST_F(DocumentIndexTest, SourcesInOrderAndSplitAtBlanks) {
  const std::string a = write("in/a.txt", "text"), b = write("in/b.txt", "text"),
                    c = write("users/u/c.txt", "text"), d = write("d.txt", "text");
  const std::string files =
      write("files", b + "\n\n" + a + " " + path("in/with blank.txt") + "\t" + b);
  const std::string users = write("users.list", path("users/u"));
  arguments_.insert(d.c_str());
  list(nullptr, files.c_str(), users.c_str(), 2);
  EXPECT_EQ(
      fileBytes(root_ + ".lst").substr(0, b.size() + a.size() + d.size() + 17),
      "\xff\xff" + b + " \xff\xff" + a + " " + std::string(2, '\0') + "c.txt \xff\xff" + d + " ");
  EXPECT_EQ(fileBytes(root_ + ".dir"), path("users/u") + "/ ");
}

}  // namespace
}  // namespace vandrelle
