#include "Document/DcDocumentListMerger.h"

#include <map>

#include "IntakeFixture.h"

namespace vandrelle {
namespace {

using Files = std::map<std::string, std::string>;  // suffix to bytes

std::string words(const std::vector<int32_t>& values) {
  std::string bytes(values.size() * 4, '\0');
  for (std::size_t i = 0; i < values.size(); ++i) storeS32(&bytes[i * 4], values[i]);
  return bytes;
}

std::string rows(std::vector<int32_t> values, int32_t one, int32_t multi) {
  values.insert(values.end(), {one, multi});
  values.resize(values.size() + 16);
  return words(values);
}

std::string entry(int16_t directory, const std::string& name) {
  std::string bytes(2, '\0');
  storeS16(bytes.data(), directory);
  return bytes + name + ' ';
}

// A page, and two articles of one file of a walked directory.
const Files kFirst = {{".idx", rows({2048, 0, 0, 3, 0, 1, 3, 1, 1}, 1, 2)},
                      {"_one.idx", words({1500, -1})},
                      {"_mlt.idx", words({0, 10, 2, 10, 20, 3})},
                      {".lpt", words({0, 0, 7, 1})},
                      {".lst", entry(-1, "/a/x") + entry(0, "rel") + words({7})},
                      {".dir", "/d/ "}};
// One article without a header, and a file of a form of its own; the first file has
// been removed, and an earlier run has left its count between the names.
const Files kSecond = {
    {".idx", rows({3, 0, 1, 15, 0, 2}, 0, 1)},
    {"_mlt.idx", words({0, 30})},
    {".lpt", words({-1, 0, 6, 0, 17, 1})},
    {".lst", entry(-1, "old") + entry(4, "rel2") + words({9}) + entry(0, "b c") + words({40})},
    {".dir", "/c/ /d/ "}};
const Files kBoth = {{".idx", rows({2048, 0, 0, 3, 0, 1, 3, 1, 1, 3, 2, 3, 15, 0, 4}, 1, 3)},
                     {"_one.idx", words({1500, -1})},
                     {"_mlt.idx", words({0, 10, 2, 10, 20, 3, 0, 30})},
                     {".lpt", words({0, 0, 7, 1, -1, 3, 13, 3, 24, 4})},
                     {".lst", entry(-1, "/a/x") + entry(0, "rel") + entry(0, "rel2") + words({9}) +
                                  entry(4, "b c") + words({47})},
                     {".dir", "/d/ /c/ "},
                     {".ver", words({1, 0, 0})}};

class DcDocumentListMergerTest : public IntakeTest {
 protected:
  std::string make(const std::string& name, const Files& files) {
    for (const auto& [suffix, bytes] : files) write(name + suffix, bytes);
    return path(name);
  }
  // What the merge of the lists throws, "" for nothing.
  std::string merge(const std::vector<std::string>& roots) {
    merger_ = std::make_unique<DcDocumentListMerger>(path("new").c_str(), nullptr);
    return thrownBy([&] {
      for (const std::string& root : roots) merger_->addIndex(root.c_str());
      merger_->done();
    });
  }
  std::unique_ptr<DcDocumentListMerger> merger_;
};

TEST_F(DcDocumentListMergerTest, DocumentsAndFilesFollowEachOther) {
  EXPECT_EQ(merge({make("first", kFirst), make("second", kSecond)}), "");
  for (const auto& [suffix, bytes] : kBoth) EXPECT_EQ(read(path("new" + suffix)), bytes) << suffix;
  EXPECT_EQ(merger_->repeatedFiles(), 0);
  EXPECT_EQ(merge({path("first"), path("second"), path("first")}), "");
  EXPECT_EQ(merger_->repeatedFiles(), 2);
}

TEST_F(DcDocumentListMergerTest, ExactSizesAndFullDirectoryFile) {
  Files pages = {{".idx", rows({2048, 0, 0}, 1, 0)},
                 {"_one.idx", words({1500, -1})},
                 {".lpt", words({0, 0})},
                 {".lst", entry(-1, "/a/x") + words({1})}};
  std::vector<std::string> roots = {make("a", pages), make("b", pages)};
  // Directories past the reach of an entry: the name moves into the list.
  const std::string folder = "/" + std::string(30000, 'f') + "/";
  for (const char* name : {"c", "d", "e"}) {
    pages[".dir"] = folder + name + "/ ";
    pages[".lst"] = entry(0, "x") + words({1});
    roots.push_back(make(name, pages));
  }
  EXPECT_EQ(merge(roots), "");
  EXPECT_EQ(read(path("new.dir")), folder + "c/ " + folder + "d/ ");
  EXPECT_EQ(read(path("new.lst")), entry(-1, "/a/x") + entry(-1, "/a/x") + entry(0, "x") +
                                       entry(30005, "x") + entry(-1, folder + "e/x") +
                                       words({5 * 1500 / 1024}));
}

}  // namespace
}  // namespace vandrelle
