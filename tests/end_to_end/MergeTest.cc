// vandrelleMerge on indexes that vandrelleIndex has built: the merged index is byte
// for byte the one of a single run, and whatever goes wrong leaves all as it was.

#include <algorithm>
#include <map>
#include <memory>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

using Files = std::map<std::string, std::string>;  // name to bytes

std::string page(const std::string& title, const std::string& text) {
  return "<html><head><title>" + title + "</title></head><body>" + text + "</body></html>";
}

class MergeTest : public ::testing::Test {
 protected:
  // A single page; a folder and a page without a word behind it; another folder.
  static void SetUpTestSuite() {
    folder_ = std::make_unique<TestDirectory>();
    writeFile(at("one/a.html"), page("Ovens", "The oven bakes bread. Bread, bread and rye."));
    for (int i = 0; i < 12; ++i) {
      std::string text = "The tide brings salt. Bridges are seen" + std::string(i % 3u, 's') + ". ";
      for (int word = 0; word < 40; ++word) {
        text += " w" + std::string(1, static_cast<char>('a' + word * i % 26)) +
                std::string(1, static_cast<char>('a' + word % 7));
      }
      writeFile(at((i < 7 ? "two/" : "three/") + std::to_string(i) + ".html"), page("Tides", text));
    }
    writeFile(at("last.html"), page("...", "."));
    const Texts sources[] = {{at("one/a.html")}, {at("two"), at("last.html")}, {at("three")}};
    for (int i = 0; i < 3; ++i) index("p" + std::to_string(i), sources[i]);
    index("whole", sources[0] + sources[1] + sources[2]);
  }
  static void TearDownTestSuite() { folder_.reset(); }

  static std::string at(const std::string& name) { return *folder_ / name; }

  static void index(const std::string& root, const Texts& files) {
    fs::create_directories(at("indexes"));
    const ProgramRun built =
        run(*folder_, "vandrelleIndex",
            Texts{"-R", at("indexes/" + root), "-html", "-fsum"} + kTables + files);
    ASSERT_EQ(built.output, "");
  }

  static ProgramRun merge(const Texts& arguments) {
    return run(*folder_, "vandrelleMerge", arguments);
  }

  inline static std::unique_ptr<TestDirectory> folder_;
};
TEST_F(MergeTest, GivesTheIndexOfASingleRun) {
  const Files before = filesOf(at("indexes/"));
  const std::string root = at("new/merged");
  const Texts sources = {at("indexes/p0"), at("indexes/p1"), at("indexes/p2")};
  // Of a former index and of a run that was cut short nothing stays.
  for (const char* left : {".info", ".xk", ".xidx.xw", ".prx", ".log", ".url", ".tmp.merge.dat"})
    writeFile(root + left, "x");
  fs::create_directories(root + ".fdat/00000000");

  const ProgramRun merged = merge(Texts{"-R", root} + kTables + sources);
  EXPECT_EQ(merged.errors, "");
  EXPECT_EQ(merged.status, 0);
  Files files;
  for (const auto& [name, bytes] : filesOf(at("new/"))) files["whole" + name.substr(6)] = bytes;
  for (const auto& [name, bytes] : before) {
    if (name.substr(0, 5) != "whole" || name == "whole.log" || name == "whole.prog") continue;
    EXPECT_EQ(files[name], bytes) << name;
    files.erase(name);
  }
  EXPECT_TRUE(files.empty()) << files.begin()->first;
  EXPECT_EQ(filesOf(at("indexes/")), before);
  // The case that this is about: a source whose words end before its documents.
  EXPECT_EQ(fs::file_size(at("indexes/p1.norm")), 7u);
  EXPECT_EQ(fs::file_size(at("indexes/p1.lpt")), 8u * 8);

  const ProgramRun plain =
      merge(Texts{"-R", at("plain/merged"), sources[0], sources[0] + "/../p2"});
  EXPECT_EQ(plain.status, 1);  // no such folder
  EXPECT_NE(plain.errors.find("p0/../p2.info"), std::string::npos) << plain.errors;
  const ProgramRun bare = merge({"-R", at("new/bare"), sources[1], sources[0]});
  EXPECT_EQ(bare.output.substr(0, 24), "2 indexes, 9 documents, ");
  EXPECT_NE(bare.output.find("there is no unstemming table\n"), std::string::npos);
  EXPECT_FALSE(fs::exists(at("new/bare.unstem")));
}

// The list of deleted documents, each source's behind those before it.
TEST_F(MergeTest, DeletionsComeAlong) {
  for (const std::string file : {"p1", "p2"}) {
    for (const auto& [name, bytes] : filesOf(at("indexes/"))) {
      if (name.starts_with(file)) writeFile(at("deleted/" + name), bytes);
    }
  }
  writeFile(at("deleted/p2.xk"), std::string("\0\0\0\5\0\0\0\2\xA0", 9));
  const ProgramRun merged =
      merge({"-R", at("deleted/new"), at("indexes/p0"), at("deleted/p1"), at("deleted/p2")});
  ASSERT_EQ(merged.status, 0) << merged.errors;
  const std::string deletions = fileBytes(at("deleted/new.xk"));
  std::string bits;
  for (std::size_t i = 64; i < deletions.size() * 8; ++i) {
    bits += static_cast<char>('0' + (deletions[i / 8] >> (7 - i % 8) & 1));
  }
  EXPECT_EQ(bits, "0000000001010000");
}

TEST_F(MergeTest, RefusalsTouchNothing) {
  const std::string p0 = at("indexes/p0");
  const std::string p1 = at("indexes/p1");
  fs::create_symlink(p0 + ".dat", at("indexes/link.dat"));
  fs::copy_file(p1 + ".info", at("indexes/extended.info"));
  for (const char* suffix :
       {".key", ".ptr", ".dat", ".idx", ".lst", ".lpt", ".fidx", ".fdat", ".fnam"}) {
    fs::copy_file(p1 + suffix, at("indexes/extended") + suffix);
  }
  writeFile(at("indexes/extended.xd"), "");
  const Files before = filesOf(at("indexes/"));
  const struct {
    Texts arguments;
    int status;
    std::string told;
  } cases[] = {
      {{}, 2, "usage: "},
      {{"-R", at("x")}, 2, "usage: "},
      {{p0, p1}, 2, "usage: "},
      {{p0, "-R"}, 2, "-R needs a value"},
      {{"-R", at("x"), "-html", p0}, 2, "there is no option '-html'"},
      {{"-R", at("x"), p0, at("none")}, 1, at("none.info")},
      {{"-R", at("x"), p0, p1, p0}, 1, "named twice"},
      {{"-R", at("x"), p0, at("indexes/extended")}, 1, "has been extended"},
      {{"-R", at("none/x"), p0, p1}, 1, "could not be written to " + at("none/x")},
      {{"-R", at("x"), "-stem", at("none"), p0, p1}, 1, at("none")},
      // The new index may be none of the sources, under whatever name.
      {{"-R", p0, p0, p1}, 1, p0 + ".info"},
      {{"-R", at("indexes/../indexes/p1"), p0, p1}, 1, "p1.info"},
      {{"-R", at("indexes/link"), p0, p1}, 1, "link.dat"},
      {{"-R", p0 + "_one", p0, p1}, 1, "p0_one.idx"},
  };
  for (const auto& c : cases) {
    const ProgramRun refused = merge(c.arguments);
    EXPECT_EQ(refused.status, c.status) << c.told;
    EXPECT_NE(refused.errors.find(c.told), std::string::npos) << refused.errors;
    EXPECT_EQ(std::count(refused.errors.begin(), refused.errors.end(), '\n'), 1) << refused.errors;
    EXPECT_EQ(filesOf(at("indexes/")), before) << c.told;
    EXPECT_FALSE(fs::exists(at("x.info")));
  }
  for (const char* file : {"indexes/link.dat", "indexes/extended.xd"}) fs::remove(at(file));
}

// Every file of a source, cut and changed in many places.
TEST_F(MergeTest, DamageEndsInOneLine) {
  const std::string source = at("damaged/p");
  Files sound;
  for (const char* suffix : {".info", ".key", ".ptr", ".dat", ".idx", "_one.idx", ".lst", ".lpt",
                             ".dir", ".fidx", ".fdat", ".fnam"}) {
    sound[suffix] = fileBytes(at("indexes/p1") + suffix);
    writeFile(source + suffix, sound[suffix]);
  }
  writeFile(at("damaged/new.info"), "a former index");
  int refused = 0;
  for (const auto& [suffix, bytes] : sound) {
    for (int part = 0; part < 12; ++part) {
      const std::size_t place = bytes.size() * static_cast<std::size_t>(part / 2) / 6;
      const std::string damaged =
          part % 2 == 0 ? bytes.substr(0, place) : flipped(bytes, place, 0xA5);
      writeFile(source + suffix, damaged);
      const std::string what =
          suffix + (part % 2 == 0 ? " cut at " : " changed at ") + std::to_string(place);
      const ProgramRun merged = merge({"-R", at("damaged/new"), at("indexes/p0"), source});
      EXPECT_EQ(merged.signal, 0) << what;
      EXPECT_EQ(fileBytes(source + suffix), damaged) << what;
      if (merged.status == 0) {
        EXPECT_EQ(merged.errors, "") << what;
        writeFile(at("damaged/new.info"), "a former index");
        continue;
      }
      ++refused;
      EXPECT_EQ(merged.status, 1) << what << merged.errors;
      EXPECT_EQ(std::count(merged.errors.begin(), merged.errors.end(), '\n'), 1)
          << what << merged.errors;
      EXPECT_EQ(fileBytes(at("damaged/new.info")), "a former index") << what;
      for (const auto& [name, ignored] : filesOf(at("damaged/"))) {
        EXPECT_EQ(name.find(".tmp"), std::string::npos) << what;
      }
    }
    writeFile(source + suffix, bytes);
  }
  EXPECT_GT(refused, 80);
}

}  // namespace
}  // namespace vandrelle::test
