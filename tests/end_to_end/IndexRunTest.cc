// vandrelleIndex as a user runs it, from the options to what the index holds.

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "Index/IkDataFileBinder.h"
#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

class IndexRunTest : public ::testing::Test {
 protected:
  IndexRunTest() {
    writeFile(site("bread.html"),
              "<html><head><title>Ovens</title>\n<meta name=\"description\" content=\"All about "
              "bread\">\n</head><body>The baker bakes bread. Bread bakes slowly.</body></html>");
    writeFile(
        site("tides.html"),
        "<html><head><title>Tides\nand moons</title></head><body><!-- smugglers -->\n<p>The sea "
        "comes in. Then the sea goes out. Nobody is surprised by this.</body></html>");
    writeFile(site("below/plain.htm"), "<p>Bridges cross the river.</p><p>Boats cross it too.</p>");
    // Long enough for the binary test: a shorter file is judged together with
    // what the test has left from the file before it.
    writeFile(site("notes.txt"),
              "Plain notes on bread.\n" + std::string(1024, ' ') + "And boats.\n");
    writeFile(site("bread.html~"), "<p>A leftover of an editor.");
    writeFile(site(".secret.html"), "<p>A hidden file.");
    writeFile(site("VD-list.html"), "<p>A generated page.");
    writeFile(site("picture.jpeg"), "<p>No picture, but named like one.");
    writeFile(site("bytes.bin"), std::string(1024, '\1'));
    fs::create_directories(folder_ / "out");
  }

  std::string path(const std::string& name) const { return folder_ / name; }
  std::string site(const std::string& name) const { return folder_ / ("site/" + name); }
  std::string root() const { return folder_ / "out/index"; }

  ProgramRun index(const Texts& arguments, const std::string& configuration = "/nonexistent") {
    return run(folder_, "vandrelleIndex", arguments, configuration);
  }
  // A run that must end well and in silence.
  void build(const Texts& arguments, const std::string& configuration = "/nonexistent") {
    const ProgramRun result = index(arguments, configuration);
    ASSERT_EQ(result.status, 0) << result.errors;
    ASSERT_EQ(result.output, "");
    ASSERT_EQ(result.errors, "");
  }

  // Names of the documents, those of the site without their folder, sorted.
  Texts documents() {
    Texts names = fieldsOf(root(), "url");
    for (std::string& name : names) {
      if (name.rfind(site(""), 0) == 0) name.erase(0, site("").size());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  // A field of each document, sorted.
  Texts field(const char* name) {
    Texts values = fieldsOf(root(), name);
    std::sort(values.begin(), values.end());
    return values;
  }

  TestDirectory folder_;
};

// All frequencies of all rows of an index, added up.
long occurrences(const std::string& root) {
  IkLocalIndexBinder binder(root.c_str(), nullptr);
  IkDataFileBinder& rows = *binder.indexData(0, 0);
  long total = 0;
  for (int number = 0; const WmWord* word = binder.wordTable()->word(number); ++number) {
    StStoragePos position;
    EXPECT_TRUE(binder.wordTable()->lookup(WmLocalWord(*word).word(), position));
    rows.seek(position);
    rows.unpackPairs([&](int, int frequency) { total += frequency; });
  }
  return total;
}

// The log: how many documents it says were indexed, of how many terms together.
std::pair<int, long> indexedByLog(const std::string& log) {
  std::istringstream lines(log);
  int documents = 0;
  long terms = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("Indexed ", 0) != 0) continue;
    ++documents;
    terms += std::stol(line.substr(line.rfind(", ") + 2));
  }
  return {documents, terms};
}

TEST_F(IndexRunTest, ANormalRunLeavesTheWholeFamilyAndNothingElse) {
  const std::set<std::string> family = {
      ".info",     ".key",  ".ptr",  ".dat",    ".idf",  ".sum",  ".norm",
      ".norm.raw", ".ver",  ".trp",  ".fdat",   ".fidx", ".fnam", ".idx",
      ".log",      ".prog", ".size", ".unstem", ".lst",  ".lpt",  "_one.idx"};
  const struct {
    std::string folder;
    int documents;  // 0: as many as there are
  } sites[] = {{path("site"), 4}, {VANDRELLE_SOURCE_DIR "/examples/site", 0}};
  for (const auto& one : sites) {
    // A list, since a folder is walked in the order of the file system.
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(one.folder)) {
      if (entry.is_regular_file()) files.insert(entry.path().string() + "\n");
    }
    std::string list;
    for (const std::string& file : files) list += file;
    writeFile(path("list"), list);
    std::map<std::string, std::string> runs[2];
    for (int i = 0; i < 2; ++i) {
      fs::remove_all(folder_ / "out");
      fs::create_directories(folder_ / "out");
      build(Texts{"-R", root(), "-html", "-text", "-fsum", "-flist", path("list")} + kTables);
      runs[i] = filesOf(root());
    }
    std::set<std::string> found;
    for (const auto& [suffix, bytes] : runs[0]) {
      found.insert(suffix);
      EXPECT_NE(bytes, "") << suffix;
    }
    EXPECT_EQ(found, family);
    for (const auto& [suffix, bytes] : withoutLogs(runs[0])) {
      EXPECT_TRUE(bytes == runs[1][suffix]) << suffix << " differs between two runs";
    }
    EXPECT_EQ(runs[0][".size"], runs[1][".size"]);

    const auto [documents, terms] = indexedByLog(runs[0][".log"]);
    EXPECT_EQ(documents, one.documents == 0 ? documents : one.documents);
    EXPECT_EQ(runs[0][".norm"].size(), static_cast<std::size_t>(documents));
    EXPECT_EQ(occurrences(root()), terms);
    const std::string closing = "\nIndexing Completed.  Total Docs: " + std::to_string(documents) +
                                ", Total Size: " + runs[0][".size"] + "K\nElapsed time: ";
    for (const char* log : {".log", ".prog"}) {
      EXPECT_NE(runs[0][log].find(closing), std::string::npos) << runs[0][log];
      EXPECT_EQ(runs[0][log].substr(runs[0][log].size() - 2), "\n\n");
    }
    EXPECT_EQ(runs[0][".prog"].rfind("Building document index...\nIndexing, stage 1\n", 0), 0u)
        << runs[0][".prog"];
  }
}

// Which documents and words a run takes in.
TEST_F(IndexRunTest, OptionsChooseDocumentsAndWords) {
  writeFile(path("only-notes"), "notes\\.txt$ TEXT\n");
  writeFile(path("no-tides"), "tides\n");
  writeFile(path("text.conf"), "-text -mwords 5\n-nostem\n");
  writeFile(path("root.conf"), root() + "\n-comments");
  writeFile(path("users"), site("below") + "\n" + site("notes.txt"));
  const Texts pages{"below/plain.htm", "bread.html", "tides.html"};
  const Texts named{"-R", root(), path("site")};
  const struct {
    Texts arguments, documents;
    std::map<const char*, bool> words = {};
    std::string configuration = "/nonexistent";
  } cases[] = {
      {named, pages, {{"ovens", true}, {"moons", true}, {"smugglers", false}}},
      {named + Texts{"-pdf", "-oldstem", "-unlimit", "-text", "-bufsize", "9", "-mdocs", "-html"},
       pages,
       {{"notes", false}, {"leftover", false}, {"hidden", false}, {"generated", false}}},
      {named + Texts{"-comments"}, pages, {{"smugglers", true}}},
      {named + Texts{"-text"}, {"notes.txt"}, {{"notes", true}}},
      {named + Texts{"-html", "-text"},
       {"below/plain.htm", "bread.html", "notes.txt", "tides.html"},
       {{"picture", false}}},
      {named + Texts{"-excl", path("only-notes")}, {"notes.txt"}},
      {named + Texts{"-html", "-excl", path("no-tides")},
       {"below/plain.htm", "bread.html"},
       {{"moons", false}}},
      {named + Texts{"-C", path("text.conf")}, {"notes.txt"}},
      {named, {"notes.txt"}, {}, path("text.conf")},
      {named + Texts{"-C", path("none")}, pages, {}, path("text.conf")},
      // Positional words of the configuration come first: this one is the root.
      {{path("site")}, pages, {{"smugglers", true}}, path("root.conf")},
      {{"-html", "-text", root(), "-ulist", path("users")}, {"below/plain.htm", "notes.txt"}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.configuration + testing::PrintToString(one.arguments));
    build(one.arguments, one.configuration);
    EXPECT_EQ(documents(), one.documents);
    for (const auto& [word, present] : one.words) EXPECT_EQ(holds(root(), word), present) << word;
  }
}

TEST_F(IndexRunTest, FieldsOfTheDocuments) {
  writeFile(path("map"), "http://shop/ " + site("bread") + "\nhttp://web/ " + site("") + "\n");
  const Texts named{"-R", root(), path("site"), "-mapfile", path("map")};
  build(named);
  EXPECT_EQ(field("title"), (Texts{"(Untitled)", "Ovens", "Tides and moons"}));
  EXPECT_EQ(field("url"),
            (Texts{"http://shop/.html", "http://web/below/plain.htm", "http://web/tides.html"}));
  EXPECT_EQ(field("summary"), Texts(3, "(No Summary)"));
  build(named + Texts{"-fsum", "-nss", "1"});
  const Texts summaries = field("summary");
  EXPECT_EQ(summaries[0], " All about bread");
  EXPECT_EQ(summaries[1], "Bridges cross the river.  ");
  EXPECT_EQ(summaries[2], "The sea comes in.  ");
}

// The same sentences are chosen in every run, also where a sample is drawn, and the
// work files go.
TEST_F(IndexRunTest, QualitySummaries) {
  const std::string tides =
      "Nobody asked. The tide lifts boats in the harbour. Bread costs money. The tide leaves the "
      "harbour and the boats. Cows eat grass.";
  for (const char* name : {"x.html", "y.html"}) writeFile(site(name), "<h1>Page</h1>" + tides);
  std::string numbers;
  for (int i = 0; i < 400; ++i) numbers += "And " + std::to_string(i * i % 89) + " or so is it. ";
  writeFile(site("z.html"), numbers);
  const Texts named =
      Texts{"-R", root(), path("site"), "-qsum", "-nss", "2", "-sroot", path("q")} + kTables;
  build(named);
  const Texts summaries = field("summary");
  ASSERT_EQ(summaries.size(), 6u);
  EXPECT_EQ(summaries[2],
            " The tide lifts boats in the harbour. The tide leaves the harbour and the boats.");
  EXPECT_EQ(summaries[3], summaries[2]);
  EXPECT_EQ(filesOf(path("q")), (std::map<std::string, std::string>()));
  const std::string fields = fileBytes(root() + ".fdat");
  build(named);
  EXPECT_EQ(fileBytes(root() + ".fdat"), fields);

  const ProgramRun failed = index(named + Texts{"-sroot", path("gone/q")});
  EXPECT_EQ(failed.status, 0);
  EXPECT_EQ(failed.errors.substr(0, failed.errors.find("sentences\n", 20)),
            "index of sentences couldn't be built\ncouldn't bind to index of ");
  EXPECT_EQ(field("summary")[1], "(No Summary)");
}

TEST_F(IndexRunTest, RunsThatBuildNothing) {
  const struct {
    Texts arguments;
    std::string output;
    int status = 0;
  } cases[] = {
      {{"-v"}, "Ombrel v1.1P1\n"},
      {{"-v", "-pidfile", path("pid"), "-R", root()}, "Ombrel v1.1P1\n"},
      {{}, "VANDRELLEERROR: Must specify root index filename\n", 255},
      {{"-html", "-fsum"}, "VANDRELLEERROR: Must specify root index filename\n", 255},
      {{"-R", root(), "-sumfile"}, "", 255},
      {{"-v", "-pidfile", path("none/pid")},
       "VANDRELLEERROR: Fatal: Could not open " + path("none/pid") + "for writing. ["},
      {{"-R", root()},
       "VANDRELLEERROR: Fatal: You must designate files to be indexed using -flist, -ulist, or "
       "provide them on the command line. ["},
      {{root(), "-flist", path("none")},
       "VANDRELLEERROR: Fatal: Coudn't open filelist '" + path("none") + "'. ["},
      {{root(), "-ulist", path("site")},
       "VANDRELLEERROR: Fatal: Coudn't open user list '" + path("site") + "'. ["},
      {{root(), path("site"), "-excl", path("none")},
       "VANDRELLEERROR: IO: File " + path("none") + "cannot be opened for reading. ["},
      {{root(), path("site"), "-mapfile", path("none")},
       "VANDRELLEERROR: Fatal: Mapfile " + path("none") + "could not be opened. ["},
      {{"-R", root(), "-transpose"}, "VANDRELLEERROR: "},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(testing::PrintToString(one.arguments));
    fs::remove_all(folder_ / "out");
    fs::create_directories(folder_ / "out");
    const ProgramRun result = index(one.arguments);
    EXPECT_EQ(result.status, one.status);
    EXPECT_EQ(result.output.rfind(one.output, 0), 0u) << result.output;
    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), !one.output.empty());
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(filesOf(root()).count(".dat"), 0u);
    if (one.arguments == Texts{"-R", root(), "-transpose"}) {
      EXPECT_TRUE(withoutLogs(filesOf(root())).empty());
    }
    if (one.status != 0 || one.arguments[0] == "-v") {
      EXPECT_TRUE(fs::is_empty(folder_ / "out"));
    }
  }
  EXPECT_GT(std::stol(fileBytes(path("pid"))), 0);
  EXPECT_EQ(fileBytes(path("pid")).find_first_not_of("0123456789"), std::string::npos);
}

TEST_F(IndexRunTest, LaterRunsOnAFinishedIndex) {
  build({"-R", root(), path("site"), "-fsum"});
  const std::map<std::string, std::string> built = withoutLogs(filesOf(root()));
  fs::remove(root() + ".trp");
  build({"-R", root(), "-transpose"});
  EXPECT_EQ(fileBytes(root() + ".prog"),
            "Building transpose table...\nTranspose table completed.\n");
  EXPECT_TRUE(withoutLogs(filesOf(root())) == built);

  // Digests that cannot be made leave all as it was.
  fs::rename(root() + ".sum", path("sum"));
  const auto before = withoutLogs(filesOf(root()));
  const ProgramRun failed = index({"-R", root(), "-transpose"});
  EXPECT_EQ(failed.status, 0);
  EXPECT_EQ(failed.output.rfind(
                "VANDRELLEERROR: Ik: Can't bind to .sum file during transpose creation [", 0),
            0u)
      << failed.output;
  EXPECT_EQ(std::count(failed.output.begin(), failed.output.end(), '\n'), 1);
  EXPECT_TRUE(withoutLogs(filesOf(root())) == before);
  fs::rename(path("sum"), root() + ".sum");

  // The flat summaries, and not a log line about them.
  const auto logged = filesOf(root());
  build({"-R", root(), "-sumfile"});
  auto after = filesOf(root());
  std::string map, flat = "*";
  for (const std::string& summary : fieldsOf(root(), "summary")) {
    map += {'\0', '\0', static_cast<char>(flat.size() >> 8), static_cast<char>(flat.size())};
    flat += summary + '\0';
  }
  EXPECT_EQ(map.size(), 12u);
  EXPECT_TRUE(after[".sum.map"] == map);
  EXPECT_EQ(after[".sum.idx"], flat);
  after.erase(".sum.map");
  after.erase(".sum.idx");
  EXPECT_TRUE(after == logged);

  // Another run leaves nothing of the former one, and none of both if it fails.
  build({"-R", path("out/fresh"), site("bread.html")});
  build({"-R", root(), site("bread.html")});
  EXPECT_TRUE(withoutLogs(filesOf(root())) == withoutLogs(filesOf(path("out/fresh"))));
  EXPECT_EQ(index({"-R", root(), "-flist", path("none")}).output.rfind("VANDRELLEERROR: ", 0), 0u);
  EXPECT_EQ(filesOf(root()).count(".info"), 0u);
}

}  // namespace
}  // namespace vandrelle::test
