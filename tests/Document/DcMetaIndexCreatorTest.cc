#include "Document/DcMetaIndexCreatorImpl.h"

#include <sys/stat.h>
#include <unistd.h>

#include "Document/DcDocument.h"
#include "Document/DcFieldBag.h"
#include "Document/DcFieldFinder.h"
#include "Document/DcUserTypes.h"
#include "DocumentImpl/DiBasicFileHandler.h"
#include "DocumentImpl/DiSeparator.h"
#include "DocumentImpl/HelperStruct.h"
#include "IntakeFixture.h"

namespace vandrelle {
namespace {

constexpr int kPage = 2048;   // one document, header parser
constexpr int kFeed = 2049;   // a line an article, header parser
constexpr int kStuck = 2050;  // a separator that never gets on
constexpr int kText = 1;

// The header ends behind the first "|"; "X" refuses.
class BarParser : public DiHeaderParser {
 public:
  char* getHeader(DcHeaderDocument*, const char*) override { return nullptr; }
  int FindEndOfHeaders(std::ifstream* file, long) override {
    if (file->peek() == 'X') return -1;
    int size = 0;
    for (int c = file->get(); c != EOF; c = file->get()) {
      ++size;
      if (c == '|') return size;
    }
    return -1;
  }
  char* getStreamHeaders(DcHeaderDocument*) override { return nullptr; }
  int headerPolicy() override { return 1; }
};

// Articles end before each newline; a line "--" is a delimiter.
class LineSeparator : public DiSeparator {
 public:
  long gotoNextArticle(std::ifstream* file, long* docEnd) override {
    const std::streamoff start = file->tellg();
    std::string line;
    std::getline(*file, line);
    if (line == "--") return -1;
    const bool ended = !file->eof();
    file->clear();
    file->seekg(start);
    *docEnd = static_cast<long>(start) + static_cast<long>(line.size());
    return *docEnd + (ended ? 1 : 0);
  }
};

class StuckSeparator : public DiSeparator {
 public:
  long gotoNextArticle(std::ifstream* file, long* docEnd) override {
    return *docEnd = static_cast<long>(file->tellg());
  }
};

class Types : public DcUserTypes {
 public:
  HelperStruct* userHelpers(int type) override {
    helpers_ = {nullptr, &parser_, nullptr, &handler_};
    feed_ = {nullptr, &parser_, &lines_, &handler_};
    stuckHelpers_ = {nullptr, nullptr, &stuck_, &handler_};
    return type == kFeed ? &feed_ : type == kStuck ? &stuckHelpers_ : &helpers_;
  }
  int multiDocFiles(int type) override { return type != kPage; }

 private:
  BarParser parser_;
  LineSeparator lines_;
  StuckSeparator stuck_;
  DiBasicFileHandler handler_;
  HelperStruct helpers_, feed_, stuckHelpers_;
};

// Remembers which document was asked for which field.
class Finder : public DcFieldFinder {
 public:
  char* getSpecialField(DcDocument* doc, const char*, const char* field) override {
    const HeapAptr<char> name(doc->documentName());
    asked +=
        std::string(field) + " of " + std::filesystem::path(name.get()).filename().string() + "\n";
    return nullptr;
  }
  std::string asked;
};

class DcMetaIndexCreatorTest : public IntakeTest {
 protected:
  DcMetaIndexCreatorTest() : root_(path("index/root")) {
    std::filesystem::create_directory(path("index"));
  }

  std::unique_ptr<DcMetaIndexCreatorImpl> creator(short info = 0) {
    auto made = std::make_unique<DcMetaIndexCreatorImpl>(root_.c_str(), info, &types_);
    made->addDataType("\\.page$", kPage, 0);
    made->addDataType("\\.feed$", kFeed, 0);
    made->addDataType("\\.stuck$", kStuck, 0);
    made->excludeRegExp("/hidden");
    made->addDataType("\\.txt$", kText, 1);
    made->DoneWithDataTypes();
    return made;
  }

  std::string root_;
  Types types_;
};

TEST_F(DcMetaIndexCreatorTest, LayoutOfAllForms) {
  const std::string page = write("a.page", "head|body");
  const std::string open = write("open.page", "no bar");
  const std::string feed = write("b.feed", "--\nt|one\nX|refused\n--\nlong|two\nlast|");
  const std::string text = write("c.txt", "plain");
  auto meta = creator();
  DcFieldBag fields(1);
  fields.Add("title", 0);
  fields.Add("url", 1);
  Finder finder;
  meta->specifyFields(&fields);
  meta->setFieldFinder(&finder);
  EXPECT_EQ(meta->Add(page.c_str()), 1);
  EXPECT_EQ(meta->Add(feed.c_str()), 3);
  EXPECT_EQ(meta->Add(text.c_str()), 1);
  EXPECT_EQ(meta->Add(open.c_str()), 1);
  meta->DoneAddingDocs();
  EXPECT_EQ(meta->numDocuments(), 6);

  // The rows, and their counts in front of room for more.
  std::vector<int32_t> rows{kPage, 0, 0,     kFeed, 0, 1,     kFeed, 1, 1, kFeed,
                            2,     1, kText, 1,     2, kPage, 2,     3, 3, 3};
  rows.resize(rows.size() + 16);
  EXPECT_EQ(integers(root_ + ".idx"), rows);
  EXPECT_EQ(integers(root_ + "_one.idx"), (std::vector<int32_t>{9, 5, 5, -1, 6, 6}));
  EXPECT_EQ(integers(root_ + "_mlt.idx"), (std::vector<int32_t>{3, 5, 2, 22, 8, 5, 31, 5, 5}));
  EXPECT_EQ(integers(root_ + ".lpt"),
            (std::vector<int32_t>{0, 0, static_cast<int32_t>(page.size()) + 3, 1,
                                  2 * static_cast<int32_t>(page.size()) + 6, 4,
                                  3 * static_cast<int32_t>(page.size()) + 8, 5}));
  EXPECT_EQ(finder.asked,
            "title of a.page\nurl of a.page\n"
            "title of b.feed\nurl of b.feed\ntitle of b.feed\nurl of b.feed\n"
            "title of b.feed\nurl of b.feed\ntitle of c.txt\nurl of c.txt\n"
            "title of open.page\nurl of open.page\n");
  EXPECT_TRUE(logged("0:there is no value for the required field url"));
  EXPECT_TRUE(logged("2:Indexing(Doc) " + page + "..."));
  EXPECT_TRUE(logged("2:Indexed(Doc) " + page));
}

TEST_F(DcMetaIndexCreatorTest, BadInputIsToldAndTheRestIsAdded) {
  const std::string good = write("in/good.txt", "text");
  write("in/empty.txt", "");
  write("in/sub/deep.txt", "text");
  write("in/hidden/secret.txt", "text");
  write("in/no.type", "text");
  write("in/refused.feed", "X|\nX|\n");
  write("in/delimiters.feed", "--\n--\n");
  write("in/never.stuck", "text");
  symlink("nowhere", path("in/dangling.txt").c_str());
  symlink("loop.txt", path("in/loop.txt").c_str());
  symlink("..", path("in/sub/up").c_str());
  symlink("good.txt", path("in/link.txt").c_str());
  mkfifo(path("in/pipe.txt").c_str(), 0600);
  const std::string longName(1500, 'n');

  auto meta = creator();
  EXPECT_EQ(meta->Add(path("missing.txt").c_str()), 0);
  EXPECT_EQ(meta->Add(longName.c_str()), 0);
  EXPECT_EQ(meta->Add(""), 0);
  EXPECT_EQ(meta->Add(path("in").c_str()), 2);
  EXPECT_EQ(meta->Add(path("in/").c_str()), 0);
  EXPECT_EQ(meta->Add(path("in/sub/../good.txt").c_str()), 0);
  meta->DoneAddingDocs();

  const std::string twice = " is a directory that has already been added - not added again";
  for (const std::string& line :
       {"0:" + path("missing.txt") + " doesn't exist.", std::string("0: doesn't exist."),
        "0:" + path("in/dangling.txt") + " doesn't exist.",
        "0:" + path("in/loop.txt") + " doesn't exist.",
        "0:" + path("in/empty.txt") + " is an empty file - not added.",
        "0:" + path("in/pipe.txt") + " is an empty file - not added.",
        "0:" + path("in/sub/up") + twice, "0:" + path("in/") + twice,
        "2:" + good + " already in index - not added again",
        "2:" + path("in/hidden") + " matches regexp /hidden - Excluded."}) {
    EXPECT_TRUE(logged(line)) << line;
  }
  EXPECT_EQ(integers(root_ + ".lpt").size(), 4u);
  EXPECT_EQ(fileBytes(root_ + ".dir"), path("in") + "/ ");
}

TEST_F(DcMetaIndexCreatorTest, NothingAcceptedThrows) {
  const std::string feed = write("x.feed", "X|\n");
  auto meta = creator();
  EXPECT_EQ(meta->Add(feed.c_str()), 0);
  EXPECT_EQ(thrownBy([&] { meta->DoneAddingDocs(); }),
            "ListCr: no valid files added to index - no index built");
  for (const char* suffix : {".idx", ".lst", ".lpt", ".dir"}) {
    EXPECT_FALSE(std::filesystem::exists(root_ + suffix)) << suffix;
  }
}

TEST_F(DcMetaIndexCreatorTest, AddingToAnIndexGoesOnBehindTheTrailer) {
  const std::string first = write("a.feed", "t|one\nt|two\n"), second = write("b.page", "h|b");
  auto meta = creator();
  meta->Add(first.c_str());
  meta->Add(second.c_str());
  meta->DoneAddingDocs();
  meta.reset();

  meta = creator(2);
  EXPECT_EQ(meta->numDocuments(), 3);
  EXPECT_TRUE(meta->Remove("/unknown").bad());
  const DocPair removed = meta->Remove(first.c_str());
  EXPECT_EQ(removed.low, 0);
  EXPECT_EQ(removed.high, 1);
  EXPECT_EQ(meta->Add(second.c_str()), 0);
  EXPECT_EQ(meta->Add(write("c.page", "h|cc").c_str()), 1);
  meta->DoneAddingDocs();

  const std::vector<int32_t> rows = integers(root_ + ".idx");
  ASSERT_EQ(rows.size(), 9u + 18 + 3 + 18);
  EXPECT_EQ((std::vector<int32_t>(rows.begin() + 27, rows.begin() + 32)),
            (std::vector<int32_t>{kPage, 1, 2, 2, 2}));
  EXPECT_EQ(integers(root_ + "_one.idx"), (std::vector<int32_t>{3, 2, 4, 2}));
  EXPECT_EQ(integers(root_ + ".lpt").at(5), 3);
}

// Nothing may get lost in silence: each file of the list on a full device.
TEST_F(DcMetaIndexCreatorTest, FullDiskThrows) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
  write("in/a.page", "h|body");
  write("in/a.feed", "h|body");
  for (const char* suffix : {".idx", ".lst", ".lpt", ".dir", "_one.idx", "_mlt.idx"}) {
    std::filesystem::remove_all(path("index"));
    std::filesystem::create_directory(path("index"));
    symlink("/dev/full", (root_ + suffix).c_str());
    auto meta = creator();
    const std::string thrown = thrownBy([&] {
      meta->Add(path("in").c_str());
      meta->DoneAddingDocs();
    });
    EXPECT_NE(thrown.find("could not be written"), std::string::npos) << suffix << " " << thrown;
    if (thrown.empty()) continue;
    thrownBy([&] { meta.reset(); });
  }
}

}  // namespace
}  // namespace vandrelle
