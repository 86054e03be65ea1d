// What users get wrong and what disks do: every case is one run of the command
// over three good pages and something bad beside them. The good pages are to be
// indexed, and the trouble to be told in the log or in one line of output.

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <functional>
#include <ostream>
#include <thread>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

using Arguments = std::vector<std::string>;

constexpr int kGoodPages = 3;

// Makes the trouble in the folder that is indexed, and answers more options of the run.
using Make = std::function<Arguments(const fs::path&)>;

struct Trouble {
  const char* name;
  Make make;
  int documents;                       // in the index; -1 when none is to be made
  std::vector<const char*> told = {};  // parts of the log, or of the output without an index
};
void PrintTo(const Trouble& trouble, std::ostream* os) { *os << trouble.name; }

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

Make file(const char* name, const std::string& text) {
  return [name, text](const fs::path& in) -> Arguments {
    writeFile(in / name, text);
    return {};
  };
}
Make page(const std::string& text) { return file("page.html", text); }

// Instead of the good pages; none for no text.
Make onlyPage(const std::string& text) {
  return [text](const fs::path& in) -> Arguments {
    for (const auto& entry : fs::directory_iterator(in)) fs::remove_all(entry);
    return text.empty() ? Arguments() : page(text)(in);
  };
}

// A file of this contents, beside the folder, as the value of an option. @ is the folder.
Make fileOption(const char* option, const std::string& contents) {
  return [option, contents](const fs::path& in) -> Arguments {
    const fs::path path = in.parent_path() / "option";
    std::string filled = contents;
    for (std::size_t at; (at = filled.find('@')) != std::string::npos;)
      filled.replace(at, 1, in.string());
    writeFile(path, filled);
    return {option, path.string()};
  };
}

Make option(const std::string& name) {
  return [name](const fs::path&) -> Arguments { return {name}; };
}

// Deeper than any fixed buffer, and than a walk that keeps its folders open.
Arguments deepFolders(const fs::path& in) {
  fs::path deep = in;
  for (int i = 0; i < 500; ++i) deep /= "ddd";
  writeFile(deep / "page.html", "deep words");
  return {};
}

Arguments strangeNames(const fs::path& in) {
  for (const char* name : {"q'uo\"te.html", "\xff\xfe.html", "-R.html", "$(x)%s%n.html"})
    writeFile(in / name, "words here");
  return {};
}

Arguments spiderPageWithoutTabs(const fs::path& in) {
  writeFile(in.parent_path() / "spider/page.html", "http\thost\nwords");
  return {"-spider", (in.parent_path() / "spider").string()};
}

std::vector<Trouble> troubles() {
  const std::string word = "T" + std::string(99, 't') + " ";
  const std::string description = "<meta name=\"description\" content=\"";
  const Make returned = fileOption("-excl", "good1\r\n");
  const Make missing = fileOption("-flist", "/nowhere\r\n@/good0.html\r\n");
  const Make zeroes = fileOption("-flist", std::string("@/good0.html\0@/good1.html\0", 26));
  return {
      {"NameNoSystemHolds", option(std::string(9000, 'x')), 3, {"xxxxxxxx"}},
      {"StrangeNames", strangeNames, 7},
      {"NameWithABlank",
       file("a b.html", "words"),
       4,
       {"up to its first white space", "can no longer be opened"}},
      {"DeepFolders", deepFolders, 4},
      {"RandomBytes", page(noise(1000000)), 4},
      {"OneLongLine", page(repeated("some words <b>and</b> ", 100000)), 4},
      {"ZeroBytes", page(repeated(std::string("w\0o\0", 4), 5000)), 4},
      {"ManyMetas", page(repeated("<meta name=description ", 20000)), 4},
      {"LongTitle", page("<title>" + repeated(word, 1000) + "</title>text"), 4},
      {"LongDescription", page(description + repeated(word, 1000) + "\">"), 4},
      {"ManyOfOneWord", page(repeated("many ", 70000)), 4, {"Frequency too large for doc #"}},
      {"NoWordsInOne", page("<p>. , -</p>"), 4},
      {"NoDocuments", onlyPage(""), -1, {"no valid files added to index - no index built"}},
      {"NoWords",
       onlyPage("<title>.</title> .,"),
       -1,
       {"No words found in any of 1 documents - no index built."}},
      {"OneWord", onlyPage("alone"), 1},
      {"EmptyExclusion", fileOption("-excl", "\ngood1"), -1, {"no valid files added"}},
      {"ExclusionWithReturn", returned, 3, {"line 1: the pattern ends in a carriage return"}},
      {"ListOfMissingFiles", missing, 3, {"/nowhere doesn't exist."}},
      {"ListWithZeroByte", zeroes, 3, {"good0.html is followed by a zero byte"}},
      {"SpiderPageWithoutTabs", spiderPageWithoutTabs, 4},
      {"ListOptionWithoutValue", option("-flist"), 3},
      {"StemOptionWithoutValue", option("-stem"), 3},
      {"NumberOptionWithoutValue", option("-nss"), 3},
      {"LogOptionWithoutValue", option("-log"), 3},
  };
}

class BadInput : public testing::TestWithParam<Trouble> {};

TEST_P(BadInput, IsToldAndLeavesTheOthersIndexed) {
  const Trouble& trouble = GetParam();
  const TestDirectory folder;
  const fs::path in = folder / "in";
  for (int i = 0; i < kGoodPages; ++i) {
    writeFile(in / ("good" + std::to_string(i) + ".html"), "apples word" + std::to_string(i));
  }
  fs::create_directories(folder / "out");
  const std::string root = folder / "out/a root";
  const Arguments arguments{"-R", root, "-html", "-fsum", in.string()};
  const ProgramRun result = run(folder, "vandrelleIndex", arguments + trouble.make(in));
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.signal, 0);
  const std::string log = fileBytes(root + ".log");
  if (trouble.documents >= 0) {
    EXPECT_EQ(result.output, "");
    EXPECT_NE(log.find("Total Docs: " + std::to_string(trouble.documents) + ","), log.npos) << log;
  } else {
    EXPECT_EQ(result.output.rfind("VANDRELLEERROR: ", 0), 0u) << result.output;
    EXPECT_EQ(result.output.find('\n'), result.output.size() - 1) << result.output;
  }
  for (const char* text : trouble.told) {
    EXPECT_NE((trouble.documents >= 0 ? log : result.output).find(text), log.npos)
        << text << '\n'
        << log << result.output;
  }
}

INSTANTIATE_TEST_SUITE_P(Matrix, BadInput, testing::ValuesIn(troubles()),
                         [](const auto& trouble) { return std::string(trouble.param.name); });

// The words of an earlier run would pass for those of documents without any.
TEST(WordlessDocuments, HideTheFormerIndex) {
  const TestDirectory folder;
  const Arguments arguments{"-R", folder / "root", folder / "in"};
  writeFile(folder / "in/page.html", "apples");
  EXPECT_EQ(run(folder, "vandrelleIndex", arguments).output, "");
  writeFile(folder / "in/page.html", "<title>.</title> .,");
  EXPECT_NE(run(folder, "vandrelleIndex", arguments).output.find("No words found"),
            std::string::npos);
  const std::string shown = run(folder, "vandrelleDump", {"-R", folder / "root", "words"}).output;
  EXPECT_EQ(shown.find("apples"), shown.npos) << shown;
}

// A file that vanishes or becomes something else between listing and indexing.
// The log goes through a small pipe, so the run cannot have listed the other
// pages before the line of the victim is read and the change is made.
TEST(ChangingInput, LosesOnlyItself) {
  const std::vector<std::function<void(const fs::path&)>> changes{
      [](const fs::path& path) { fs::remove(path); },
      [](const fs::path& path) { fs::resize_file(path, 3); },
      [](const fs::path& path) { fs::remove(path), mkfifo(path.c_str(), 0600); },
      [](const fs::path& path) { fs::remove(path), fs::create_directory(path); },
  };
  for (const auto& change : changes) {
    const TestDirectory folder;
    const std::string victim = folder / "victim.html";
    writeFile(victim, repeated("victim ", 1000));
    for (int i = 0; i < 60; ++i) writeFile(folder / ("in/" + std::to_string(i) + ".html"), "other");
    const std::string log = folder / "log";
    ASSERT_EQ(mkfifo(log.c_str(), 0600), 0);
    const int pipe = open(log.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    fcntl(pipe, F_SETPIPE_SZ, 4096);
    std::atomic<bool> ended = false;
    std::string text;
    std::thread reader([&] {
      bool changed = false;
      char byte;
      while (true) {
        const bool last = ended;
        if (read(pipe, &byte, 1) == 1) {
          text += byte;
          if (!changed && text.find("Indexed(Doc) ") != text.npos) change(victim), changed = true;
        } else if (last) {
          return;
        } else {
          usleep(200);
        }
      }
    });
    const std::string root = folder / "root";
    const ProgramRun result =
        run(folder, "vandrelleIndex", {"-R", root, "-log", log, victim, folder / "in"});
    ended = true;
    reader.join();
    close(pipe);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_NE(text.find("Total Docs: 61,"), text.npos) << text;
    const std::string row = run(folder, "vandrelleDump", {"-R", root, "row", "other"}).output;
    EXPECT_NE(row.find("60 documents"), row.npos) << row;
  }
}

// An index that needs a few hundred kilobytes, most of them for its words.
class CutShort : public testing::Test {
 protected:
  void SetUp() override {
    writeFile(folder_ / "in/page.html", "<title>x</title>" + words(2000));
    writeFile(folder_ / "in/other.html", words(50));
    fs::create_directories(folder_ / "out");
  }

  static std::string words(int count) {
    std::string text;
    unsigned state = 7;
    for (int i = 0; i < count * 12; ++i) {
      state = state * 1664525 + 1013904223;
      text += i % 12 == 11 ? ' ' : static_cast<char>('a' + (state >> 24) % 26);
    }
    return text;
  }

  ProgramRun index() const {
    return run(folder_, "vandrelleIndex", {"-R", folder_ / "out/r", folder_ / "in"});
  }

  void expectFailure(const std::string& where) const {
    const ProgramRun result = index();
    EXPECT_EQ(result.status, 0) << where << result.errors;
    EXPECT_EQ(result.output.rfind("VANDRELLEERROR: ", 0), 0u) << where << result.output;
    EXPECT_EQ(result.output.find('\n'), result.output.size() - 1) << where << result.output;
  }

  TestDirectory folder_;
};

TEST_F(CutShort, FullDiskEndsTheRunAtAnyFile) {
  for (const char* suffix : {".ver", ".idx", "_one.idx", ".lst", ".lpt", ".tmp000", ".sum", ".norm",
                             ".norm.raw", ".fidx", ".fnam"}) {
    const fs::path file = folder_ / (std::string("out/r") + suffix);
    fs::remove(file);
    fs::create_symlink("/dev/full", file);
    expectFailure(suffix);
    fs::remove(file);
  }
  // A link in the place of these would be removed like a former run's file.
  for (const char* suffix : {".dir", ".trp"}) {
    const fs::path folder = folder_ / (std::string("out/r") + suffix);
    fs::remove(folder);
    fs::create_directory(folder);
    expectFailure(suffix);
    fs::remove(folder);
  }
  EXPECT_EQ(index().output, "");
}

TEST_F(CutShort, FullDiskEndsTheRunAtAnySize) {
  rlimit unlimited;
  getrlimit(RLIMIT_FSIZE, &unlimited);
  for (const rlim_t bytes : {3000u, 5000u, 10000u, 20000u, 25000u}) {
    const rlimit limit{bytes, unlimited.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    expectFailure(std::to_string(bytes) + " bytes ");
  }
  setrlimit(RLIMIT_FSIZE, &unlimited);
  EXPECT_EQ(index().output, "");
}

TEST_F(CutShort, MissingFolderIsTold) {
  fs::remove_all(folder_ / "out");
  expectFailure("missing folder");
}

TEST_F(CutShort, KilledRunLeavesNothingThatANewOneMinds) {
  ASSERT_EQ(index().output, "");
  const auto fresh = withoutLogs(filesOf(folder_ / "out/r"));
  for (const useconds_t wait : {3000u, 8000u, 15000u, 25000u, 40000u, 60000u}) {
    const pid_t child = fork();
    if (child == 0) {
      const std::string root = folder_ / "out/r";
      const std::string in = folder_ / "in";
      setenv("VANDRELLE_CONFIG", "/nonexistent", 1);
      execl(VANDRELLE_BIN_DIR "/vandrelleIndex", "vandrelleIndex", "-R", root.c_str(), in.c_str(),
            static_cast<char*>(nullptr));
      _exit(127);
    }
    usleep(wait);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    // What can be asked is either the whole index or none.
    const Texts query{"-R", folder_ / "out/r", "-plain", "nosuchword"};
    EXPECT_EQ(run(folder_, "vandrelleSearch", query + kTables).status,
              withoutLogs(filesOf(folder_ / "out/r")) == fresh ? 0 : 1);
    EXPECT_EQ(index().output, "");
    EXPECT_EQ(withoutLogs(filesOf(folder_ / "out/r")), fresh)
        << "killed after " << wait << " microseconds";
  }
}

}  // namespace
}  // namespace vandrelle::test
