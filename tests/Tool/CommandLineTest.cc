#include "Tool/CommandLine.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "Fun/FdWrapper.h"
#include "ThrownBy.h"

namespace vandrelle {
namespace {

void declare(CommandLine* line) {
  line->arg_flag("text", "-text", nullptr);
  line->arg_single("level", "-l", nullptr);
  line->arg_double("root", "-R", nullptr);
  line->arg_double("count", "-n", "2");
  line->arg_flag("bare", nullptr, nullptr);
}

void parseVector(CommandLine* line, std::vector<std::string> tokens) {
  tokens.insert(tokens.begin(), "program");
  std::vector<char*> argv;
  for (std::string& token : tokens) argv.push_back(token.data());
  line->parse(static_cast<int>(argv.size()), argv.data());
}

// What came of it: each option's value, then the positional arguments.
std::string outcome(const CommandLine& line) {
  std::string text;
  for (const char* name : {"text", "level", "root", "count", "bare"}) {
    const char* value = line.str_arg(name);
    EXPECT_EQ(line.exist_arg(name), value != nullptr);
    text += value != nullptr ? "[" + std::string(value) + "]" : ".";
  }
  FdSStream rest(line.unusedArgs());
  for (rest.reset(); rest.more(); rest.next()) text += std::string(" ") + rest.key();
  return text;
}

struct Case {
  std::vector<std::string> tokens;
  const char* outcome;
};

const Case kCases[] = {
    {{}, "...[2]."},
    {{"-text", "-text"}, "[1]..[2]."},
    {{"-R", "root", "a", "-x", "b"}, "..[root][2]. a -x b"},
    {{"-R", "one", "-R", "two"}, "..[two][2]."},
    {{"-l", "-l5"}, ".[5].[2]."},
    {{"-l"}, ".[].[2]."},
    {{"-R", "-text"}, "..[-text][2]."},
    {{"x", "-n"}, "..... x"},
    {{"-n", "7", "-R"}, "...[7]."},
    {{"bare", "-bare", "root"}, "...[2][1] -bare root"},
    {{"-texts", "-tex", "#no", "comment"}, "...[2]. -texts -tex #no comment"},
};

TEST(CommandLine, VectorAndFileReadAlike) {
  for (const Case& given : kCases) {
    std::string text;
    for (const std::string& token : given.tokens) text += token + " \n\t";
    SCOPED_TRACE(text);
    CommandLine vector;
    declare(&vector);
    parseVector(&vector, given.tokens);
    EXPECT_EQ(outcome(vector), given.outcome);
    for (const bool trailingSpace : {true, false}) {
      CommandLine file;
      declare(&file);
      std::istringstream is(trailingSpace ? text
                                          : text.substr(0, text.find_last_not_of(" \n\t") + 1));
      file.parse(is);
      EXPECT_EQ(outcome(file), given.outcome);
    }
  }
}

TEST(CommandLine, OrderOfDeclarationDecides) {
  CommandLine prefixFirst;
  prefixFirst.arg_single("prefix", "-t", nullptr);
  prefixFirst.arg_flag("text", "-text", nullptr);
  parseVector(&prefixFirst, {"-text"});
  EXPECT_STREQ(prefixFirst.str_arg("prefix"), "ext");
  EXPECT_FALSE(prefixFirst.exist_arg("text"));
}

TEST(CommandLine, LongTokensOfAFileComeInPieces) {
  CommandLine line;
  std::istringstream file(std::string(300, 'x') + " y");
  line.parse(file);
  line.parse(nullptr);
  EXPECT_FALSE(line.exist_arg(nullptr));
  EXPECT_EQ(line.numUnusedArgs(), 3);
  EXPECT_EQ(line.unusedArg(0), std::string(255, 'x'));
  EXPECT_EQ(line.unusedArg(1), std::string(45, 'x'));
}

TEST(CommandLine, SixtyThreeOptionsAreUsable) {
  CommandLine line;
  for (int i = 0; i < 63; ++i) line.arg_flag(("o" + std::to_string(i)).c_str(), nullptr, nullptr);
  EXPECT_EQ(thrownBy([&] { line.arg_flag("last", nullptr, "1"); }),
            "CommandLine: Too many options (compile-time limit)");
  EXPECT_TRUE(line.exist_arg("last"));
}

}  // namespace
}  // namespace vandrelle
