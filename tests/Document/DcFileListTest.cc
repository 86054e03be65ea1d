#include "Document/DcFileListCreator.h"
#include "Document/DcFileListReader.h"
#include "Document/DcIndexCreator.h"
#include "IntakeFixture.h"

namespace vandrelle {
namespace {

using namespace std::string_literals;

// Makes one document of every file that is not named "no", and walks directories.
class OneEach : public DcIndexCreator {
 public:
  int Add(const char* fileName) override {
    if (std::filesystem::is_directory(fileName)) return list->AddDirectory(fileName, fileName);
    const std::string name = fileName;
    if (name.size() >= 3 && name.substr(name.size() - 3) == "/no") return 0;
    list->AddFile(fileName, documents++, fileName, 100);
    return 1;
  }
  void DoneAddingDocs() override {}
  DocPair Remove(const char*) override { return {}; }
  int numDocuments() override { return documents; }
  DcDocumentManager* getDocManager(TkStemmer*, DcFieldParser*) override { return nullptr; }

  DcFileListCreator* list = nullptr;
  int documents = 0;
};

class DcFileListTest : public IntakeTest {
 protected:
  DcFileListTest() : root_(path("root")) {}

  std::unique_ptr<DcFileListCreator> creator(short info = 0) {
    auto list = std::make_unique<DcFileListCreator>(root_.c_str(), info, &each_);
    each_.list = list.get();
    return list;
  }

  // All names as the reader gives them, "-" for a removed file.
  std::vector<std::string> names() {
    std::fstream ptr(root_ + ".lpt", std::ios::in), list(root_ + ".lst", std::ios::in),
        dir(root_ + ".dir", std::ios::in);
    DcFileListReader reader(root_.c_str(), &ptr, &list, dir ? &dir : nullptr);
    std::vector<std::string> all;
    const long files = reader.numFiles();
    for (long number = 0; number < files; ++number) {
      ptr.clear();
      ptr.seekg(number * 8);
      HeapAptr<char> name(reader.readName());
      all.push_back(name != nullptr ? name.get() : "-");
    }
    return all;
  }

  std::string root_;
  OneEach each_;
};

TEST_F(DcFileListTest, LayoutOfFilesAndDirectories) {
  write("top/sub/x", "");
  write("top/no", "");
  const std::string top = path("top");
  auto list = creator();
  EXPECT_EQ(list->numFiles(), 0);
  EXPECT_TRUE(list->NewFile("/a"));
  list->AddFile("/a", 0, "/a", 2047);
  EXPECT_FALSE(list->NewFile("/a"));
  each_.documents = 3;
  EXPECT_EQ(list->AddDirectory(top.c_str(), top.c_str()), 1);
  EXPECT_FALSE(list->NewDirectory(top.c_str()));
  EXPECT_FALSE(list->NewDirectory((top + "/sub").c_str()));
  list->AddFile("b", 4, "/b", 1);
  list->Done();

  EXPECT_EQ(integers(root_ + ".lpt"), (std::vector<int32_t>{0, 0, 5, 3, 13, 4}));
  EXPECT_EQ(fileBytes(root_ + ".lst"), "\xff\xff/a \0\0sub/x \xff\xff"s + "b \0\0\0\2"s);
  EXPECT_EQ(fileBytes(root_ + ".dir"), top + "/ ");
  EXPECT_EQ(names(), (std::vector<std::string>{"/a", top + "/sub/x", "b"}));
}

TEST_F(DcFileListTest, DirectoryWithoutFilesLeavesNoName) {
  write("empty/no", "");
  const std::string empty = path("empty");
  auto list = creator();
  EXPECT_EQ(list->AddDirectory((empty + "/").c_str(), empty.c_str()), 0);
  list->AddFile("/a", 0, "/a", 1);
  list->Done();
  EXPECT_FALSE(std::filesystem::exists(root_ + ".dir"));
  EXPECT_EQ(names(), (std::vector<std::string>{"/a"}));
}

// The size word counts whole kilobytes of the sum, whatever the parts.
TEST_F(DcFileListTest, SizeWordCountsKilobytes) {
  const struct {
    std::vector<long> sizes;
    uint32_t kilobytes;
  } cases[] = {{{1023}, 0},
               {{1048576}, 1024},
               {{1048576, 1}, 1024},
               {{1048576, 1024}, 1025},
               {{3 * 1048576L + 1024, 3}, 3073},
               {std::vector<long>(5, 2147483647), 10485759}};
  for (const auto& one : cases) {
    auto list = creator();
    for (std::size_t i = 0; i < one.sizes.size(); ++i) {
      list->AddFile("/f", 0, std::to_string(i).c_str(), one.sizes[i]);
    }
    list->Done();
    const std::string bytes = fileBytes(root_ + ".lst");
    EXPECT_EQ(loadU32(bytes.data() + bytes.size() - 4), one.kilobytes);
  }
}

TEST_F(DcFileListTest, ExtendedListKeepsTheOldSizeWordAndTheNumbers) {
  const std::string a = write("a", "x"), c = write("c", "x");
  auto list = creator();
  list->AddFile(a.c_str(), 0, a.c_str(), 4096);
  list->AddFile("/gone", 2, "/gone", 4096);
  list->AddFile(c.c_str(), 5, c.c_str(), 4096);
  list->Done();

  list = creator(2);
  EXPECT_EQ(list->numFiles(), 3);
  EXPECT_FALSE(list->NewFile(a.c_str()));
  EXPECT_TRUE(list->NewFile("/new"));
  long low = 0, high = 0;
  list->Remove("/unknown", &low, &high);
  EXPECT_EQ(low, -1);
  list->Remove("/gone", &low, &high);
  EXPECT_EQ(low, 2);
  EXPECT_EQ(high, 4);
  EXPECT_TRUE(list->NewFile("/gone"));
  list->Remove(c.c_str(), &low, &high);
  EXPECT_EQ(low, 5);
  EXPECT_EQ(high, -2);
  list->AddFile("/new", 7, "/new", 1024);
  list->Done();

  EXPECT_EQ(names(), (std::vector<std::string>{a, "-", "-", "/new"}));
  const std::string bytes = fileBytes(root_ + ".lst");
  EXPECT_EQ(bytes.substr(bytes.size() - 15), "\0\0\0\xc\xff\xff/new \0\0\0\xd"s);
  EXPECT_FALSE(std::filesystem::exists(root_ + ".tmp"));
}

// The 16 bits of an offset turn negative past 32767, and come round again past 65535.
TEST_F(DcFileListTest, MoreDirectoriesThanOffsetsReach) {
  const std::string part(230, 'd');
  const std::string base = part + "/" + part + "/" + part + "/";
  auto list = creator();
  std::string expectedList;
  size_t offset = 0;
  int negative = 0;
  for (int i = 0; i < 100; ++i) {
    const std::string directory = path(base + std::to_string(i));
    write(base + std::to_string(i) + "/f", "");
    list->AddDirectory(directory.c_str(), directory.c_str());
    expectedList += {static_cast<char>(offset >> 8), static_cast<char>(offset), 'f', ' '};
    if ((offset & 0x8000) != 0) ++negative;
    offset += directory.size() + 2;
  }
  list->Done();
  EXPECT_GT(offset, 65536u);
  EXPECT_EQ(fileBytes(root_ + ".lst").substr(0, expectedList.size()), expectedList);
  const auto all = names();
  EXPECT_EQ(std::count(all.begin(), all.end(), "f"), negative);
  EXPECT_EQ(all.front(), path(base + "0/f"));
}

TEST_F(DcFileListTest, Failures) {
  auto list = creator();
  EXPECT_EQ(thrownBy([&] { list->Done(); }),
            "ListCr: no valid files added to index - no index built");
  DcIndexCreator* each = &each_;
  EXPECT_EQ(thrownBy([&] { new DcFileListCreator(root_.c_str(), 2, each); }),
            "ListCr: can't bind to file list");
  write("root.lst", "abcd");
  EXPECT_EQ(thrownBy([&] { new DcFileListCreator(root_.c_str(), 2, each); }),
            "ListCr: can't bind to ptr list");
  DcFileListCreator nowhere("/nonexistent/root", 0, each);
  EXPECT_EQ(thrownBy([&] { nowhere.AddFile("/a", 0, "/a", 1); }),
            "ListCr: couldn't create file list");
  EXPECT_EQ(thrownBy([&] { nowhere.Done(); }),
            "ListCr: no valid files added to index - no index built");
}

// Records that lead nowhere must not be followed.
TEST_F(DcFileListTest, DamagedListsAreRead) {
  write("root.lst", "\0\5name"s);
  write("root.lpt",
        "\0\0\0\0\0\0\0\0"s + "\x7f\0\0\0\0\0\0\0"s + "\x80\0\0\0\0\0\0\0"s + "\0\0\0"s);
  write("root.dir", "/d/");
  EXPECT_EQ(names(), (std::vector<std::string>{"name", "-", "-"}));
}

}  // namespace
}  // namespace vandrelle
