// vandrelleSearch on an index of the site in examples/: the answers that its
// documentation promises, the forms of an answer, and what hostile queries and
// damaged files end in.

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

class SearchTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<TestDirectory>();
    const std::vector<std::string> options{"-R", root(), "-html", "-fsum",
                                           VANDRELLE_SOURCE_DIR "/examples/site"};
    const ProgramRun built = run(*folder_, "vandrelleIndex", options + kTables);
    ASSERT_EQ(built.output, "");
  }
  static void TearDownTestSuite() { folder_.reset(); }

  static std::string root() { return *folder_ / "index"; }

  static ProgramRun search(const std::vector<std::string>& arguments, const std::string& input = "",
                           const std::string& index = root()) {
    writeFile(*folder_ / "queries", input);
    const std::vector<std::string> options = {"-R", index};
    return run(*folder_, "vandrelleSearch", options + kTables + arguments, "/nonexistent",
               *folder_ / "queries");
  }

  // The fields of each line of an answer with -plain.
  static std::vector<std::vector<std::string>> plain(std::vector<std::string> arguments) {
    arguments.push_back("-plain");
    const ProgramRun result = search(arguments);
    EXPECT_EQ(result.status, 0) << result.errors;
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : split(result.output, '\n')) rows.push_back(split(line, '\t'));
    return rows;
  }

  inline static std::unique_ptr<TestDirectory> folder_;
};

TEST_F(SearchTest, DocumentedExamplesFindTheirPages) {
  const std::string page = fileBytes(VANDRELLE_SOURCE_DIR "/docs/query-language.md");
  std::string queries;
  std::vector<std::string> titles;
  for (const std::string& line : split(page, '\n')) {
    const std::size_t arrow = line.find(" => ");
    if (arrow == std::string::npos) continue;
    queries += line.substr(0, line.find_last_not_of(' ', arrow) + 1) + "\n";
    titles.push_back(line.substr(arrow + 4));
  }
  ASSERT_GT(titles.size(), 10u);
  const ProgramRun result = search({"-i", "-plain", "-n", "1"}, queries);
  EXPECT_EQ(result.errors, "");
  const std::vector<std::string> lines = split(result.output, '\n');
  ASSERT_EQ(lines.size(), 2 * titles.size());
  for (std::size_t i = 0; i < titles.size(); ++i) {
    EXPECT_EQ(split(lines[2 * i], '\t').back(), titles[i]) << split(queries, '\n')[i];
    EXPECT_EQ(lines[2 * i + 1], "");
  }
}

TEST_F(SearchTest, FormsOfAnAnswerAgree) {
  const auto rows = plain({"-n", "4", "clocks", "and", "tides"});
  ASSERT_EQ(rows.size(), 4u);
  const ProgramRun json = search({"-json", "-n", "4", "clocks", "tides"});
  const std::vector<std::string> objects = split(json.output, '\n');
  const ProgramRun blocks = search({"-n", "4", "clocks", "tides"});
  float score = 1e9f;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_EQ(rows[i].size(), 5u);
    const nlohmann::json object = nlohmann::json::parse(objects.at(i));
    EXPECT_EQ(rows[i][0], std::to_string(i + 1));
    EXPECT_EQ(rows[i][1], std::to_string(object["document"].get<int>()));
    EXPECT_NEAR(std::stof(rows[i][2]), object["score"].get<float>(), 1e-6f);
    EXPECT_EQ(rows[i][3], object["address"]);
    EXPECT_EQ(rows[i][4], object["title"]);
    EXPECT_NE(blocks.output.find(rows[i][4] + "\n     " + rows[i][3]), std::string::npos);
    EXPECT_NE(object["summary"], "");
    EXPECT_LE(std::stof(rows[i][2]), score);
    score = std::stof(rows[i][2]);
  }
  const std::string closing = split(blocks.output, '\n').back();
  EXPECT_NE(closing.find(" documents match, "), std::string::npos) << closing;
}

TEST_F(SearchTest, ByExample) {
  const std::string document = plain({"-n", "1", "stone", "bridge"}).at(0).at(1);
  const auto similar = plain({"-similar", document, "-n", "5"});
  ASSERT_GE(similar.size(), 2u);
  for (const auto& row : similar) EXPECT_NE(row[1], document);
  EXPECT_NE(similar[0][4].find("bridge"), std::string::npos) << similar[0][4];

  const auto words = plain({"-words", document, "-n", "30"});
  EXPECT_TRUE(
      std::any_of(words.begin(), words.end(), [](const auto& w) { return w[1] == "arches"; }));

  const ProgramRun summary = search({"-sum", document, "-nss", "2"});
  EXPECT_EQ(summary.status, 0) << summary.errors;
  EXPECT_EQ(split(summary.output, '\n').size(), 2u);

  int central = 0;
  for (const std::string& line : split(search({"-gather", "3", "-json", "water"}).output, '\n')) {
    const nlohmann::json group = nlohmann::json::parse(line);
    EXPECT_FALSE(group["words"].empty());
    central += static_cast<int>(group["central"].size());
  }
  EXPECT_GT(central, 3);
}

// Each page holds several words of the one stem, so that their counts together are
// more than there are pages.
TEST_F(SearchTest, WordsOfEveryPage) {
  const std::string pages = *folder_ / "pages";
  for (const char* rest : {"hose", "wall", "gate", "pond", "étang"}) {
    writeFile(pages + "/" + rest + ".html",
              std::string("gardens and gardening in the garden with a ") + rest);
  }
  const std::string index = *folder_ / "common";
  run(*folder_, "vandrelleIndex", std::vector<std::string>{"-R", index, "-html", pages} + kTables);
  const auto answers =
      split(search({"-i", "-plain"}, "garden\ngarden hose\nétang\n", index).output, '\n');
  ASSERT_EQ(answers.size(), 14u);
  EXPECT_NE(answers[6].find("hose.html"), std::string::npos) << answers[6];
  EXPECT_NE(answers[12].find("étang.html"), std::string::npos) << answers[12];
}

TEST_F(SearchTest, HostileQueriesGetALineAndAnEmptyAnswer) {
  std::string words, deep(10000, '(');
  for (int i = 0; i < 1200; ++i) words += "w" + std::to_string(i) + " ";
  std::vector<std::string> queries = split(
      "|   |(|()|(find)|(nothing here)|(find \"open|(find x) (find y)|(find n=0 x)|(words bridge)",
      '|');
  for (const std::string& query : {words, deep, "(find " + words + ")", std::string(10 << 20, '('),
                                   std::string("zero\0byte", 9)}) {
    queries.push_back(query);
  }
  for (const std::string& query : queries) {
    const ProgramRun result = search({"-i", "-plain"}, query + "\nsundial\n");
    const std::string what = query.substr(0, 40);
    EXPECT_EQ(result.status, 0) << what << result.errors.substr(0, 300);
    EXPECT_FALSE(result.errors.empty()) << what;
    EXPECT_EQ(result.output.substr(0, 1), "\n") << what;
    EXPECT_NE(result.output.find("The sundial in the yard"), std::string::npos) << what;
  }
}

TEST_F(SearchTest, WrongUse) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* told;
  } kCases[] = {
      {{"-R", "/nonexistent/root", "bridge"}, 1, "/nonexistent/root"},
      {{"-stem", "/nonexistent/stem.tbl", "bridge"}, 1, "/nonexistent/stem.tbl"},
      {{}, 1, "the query has no words to look for"},
      {{"...", "!"}, 1, "the query has no words to look for"},
      {{"(and"}, 1, "This node requires at least two sub-nodes"},
      {{"-fast", "bridge"}, 2, "there is no option '-fast'"},
      {{"-n", "0", "bridge"}, 2, "-n takes a number from 1 on, not '0'"},
      {{"bridge", "-n"}, 2, "-n needs a value"},
      {{"-plain", "-json", "bridge"}, 2, "usage:"},
      {{"-i", "bridge"}, 2, "usage:"},
      {{"-similar", "44444"}, 1, "no digest of document 44444"},
      {{"-words", "44444"}, 1, "no digest of document 44444"},
      {{"-sum", "44444"}, 1, "Couldn't get document"},
  };
  for (const auto& c : kCases) {
    const ProgramRun result = search(c.arguments);
    EXPECT_EQ(result.status, c.status) << c.told;
    EXPECT_NE(result.errors.find(c.told), std::string::npos) << result.errors;
    EXPECT_EQ(result.output, "") << c.told;
  }
}

// A file of the index is cut off, or has a byte changed: an answer or a line.
// Past 2 GiB a file becomes a folder of several.
TEST_F(SearchTest, RowsAndDigestsOfSeveralFiles) {
  const std::vector<Texts> questions = {
      {"stone", "bridges"}, {"-similar", "3"}, {"-gather", "2", "water"}, {"-words", "4"}};
  std::vector<std::string> answers;
  for (const auto& question : questions)
    answers.push_back(search(question + Texts{"-json"}).output);
  for (const char* suffix : {".dat", ".trp"}) {
    const std::string bytes = fileBytes(root() + suffix);
    std::filesystem::remove(root() + suffix);
    writeFile(root() + suffix + "/00000000", bytes);
  }
  for (std::size_t i = 0; i < questions.size(); ++i) {
    EXPECT_EQ(search(questions[i] + Texts{"-json"}).output, answers[i]);
  }
  for (const char* suffix : {".dat", ".trp"}) {
    const std::string bytes = fileBytes(root() + suffix + "/00000000");
    std::filesystem::remove_all(root() + suffix);
    writeFile(root() + suffix, bytes);
  }
}

TEST_F(SearchTest, DamagedFiles) {
  for (const char* suffix : {".info", ".key", ".ptr", ".dat", ".norm", ".trp", ".unstem", ".fidx",
                             ".fdat", ".fnam", ".idx", ".lst", ".lpt"}) {
    const std::string sound = fileBytes(root() + suffix);
    for (std::size_t i = 0; i < 8; ++i) {
      std::string damaged = sound.substr(0, i * sound.size() / 4);
      if (i >= 4) {
        damaged = sound;
        const std::size_t step = std::max<std::size_t>(sound.size() / 40, 1);
        for (std::size_t at = i; at < damaged.size(); at += step)
          damaged[at] ^= static_cast<char>(i);
      }
      writeFile(root() + suffix, damaged);
      const ProgramRun result =
          search({"-i", "-gather", "2"}, "stone bridges\n(and (find clock) (find water))\n");
      EXPECT_TRUE(result.status == 0 || (result.status == 1 && !result.errors.empty()))
          << suffix << " " << i << ": " << result.status << " " << result.signal << result.errors;
    }
    writeFile(root() + suffix, sound);
  }
}

}  // namespace
}  // namespace vandrelle::test
