// Positions of words, from pages to phrases: an index that records them, what
// vandrelleDump shows of it and what vandrelleSearch -phrase finds.

#include <algorithm>
#include <sstream>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

TEST(Phrase, IsFoundByThePositionsOfItsWords) {
  const TestDirectory folder;
  const std::string root = folder / "index";
  const auto said = [&](const std::string& program, std::vector<std::string> arguments,
                        int status) {
    if (program != "vandrelleDump") arguments = kTables + arguments;
    const std::vector<std::string> named = {"-R", root};
    const ProgramRun result = run(folder, program, named + arguments);
    EXPECT_EQ(result.status, status) << result.errors;
    return status == 0 ? result.output : result.errors;
  };
  writeFile(folder / "0.html",
            "<title>Ships</title><p>The <b>old</b> ship of the line. The ship sails.");
  writeFile(folder / "1.html",
            "<title>The Ship</title><p>Of an old line the ship, the old ships of the line.");
  writeFile(folder / "2.html",
            "<title>Line</title><p>The <i>ship</i> of the\n line, THE SHIP OF THE LINE; the ship.");
  const auto build = [&](std::vector<std::string> arguments) {
    for (const char* page : {"0.html", "1.html", "2.html"}) arguments.push_back(folder / page);
    said("vandrelleFeed", arguments, 0);
  };

  build({"-type", "2"});
  const std::string without = ": the index was built without the positions of its words";
  EXPECT_EQ(said("vandrelleDump", {"positions", "ship"}, 1), "vandrelleDump" + without + "\n");
  for (const char* query : {"ship", "-i"}) {
    EXPECT_EQ(said("vandrelleSearch", {"-phrase", query}, 1),
              "vandrelleSearch" + without + ", which a phrase needs\n");
  }
  build({"-type", "2", "-prox"});
  // The title comes first.
  EXPECT_EQ(said("vandrelleDump", {"positions", "ship"}, 0),
            "word 5, 3 documents, 7 bytes of positions\n"
            "       0  3 8\n       1  1 7\n       2  2 7 12\n");

  const struct {
    std::vector<std::string> phrase;
    std::string documents;  // rising
  } cases[] = {{{"ship", "of", "the", "line"}, "02"},
               {{"The Ship, of the"}, "2"},
               {{"ships", "of", "the", "line"}, "1"},
               {{"ships the"}, "0"},  // from the title into the text
               {{"(the", "ship)"}, "012"},
               {{"line of"}, ""},
               {{"unheard ship"}, ""}};
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.phrase;
    arguments.insert(arguments.begin(), {"-phrase", "-plain"});
    std::string found;
    std::istringstream lines(said("vandrelleSearch", arguments, 0));
    for (std::string line; std::getline(lines, line);) found += line[line.find('\t') + 1];
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, c.documents) << c.phrase[0];
  }
  EXPECT_EQ(said("vandrelleSearch", {"-phrase", ",;"}, 1),
            "vandrelleSearch: the query has no words to look for\n");
  EXPECT_NE(said("vandrelleSearch", {"-phrase"}, 2), "");
}

}  // namespace
}  // namespace vandrelle::test
