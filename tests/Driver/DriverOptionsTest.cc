#include "Driver/DriverOptions.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "Fun/FdStream.h"

namespace vandrelle {
namespace {

// The words of a command line as main() gets them.
class Arguments {
 public:
  explicit Arguments(const std::string& line) {
    std::istringstream words("vandrelleIndex " + line);
    for (std::string word; words >> word;) words_.push_back(word);
    for (std::string& word : words_) pointers_.push_back(word.data());
  }
  int count() const { return static_cast<int>(pointers_.size()); }
  char** values() { return pointers_.data(); }

 private:
  std::vector<std::string> words_;
  std::vector<char*> pointers_;
};

// As a run reads them: the configuration file first.
std::unique_ptr<CommandLine> optionsOf(const std::string& configuration, const std::string& line) {
  auto options = std::make_unique<CommandLine>();
  declareDriverOptions(options.get());
  std::istringstream file(configuration);
  options->parse(file);
  Arguments arguments(line);
  options->parse(arguments.count(), arguments.values());
  return options;
}

std::string positionals(const CommandLine& options) {
  std::unique_ptr<FdStream> rest(options.unusedArgs());
  std::string text;
  for (rest->reset(); rest->more(); rest->next()) {
    text += std::string(static_cast<const char*>(rest->key())) + ' ';
  }
  return text;
}

TEST(DriverOptions, ModesOfCommandLines) {
  const struct {
    const char* configuration;
    const char* line;
    int mask;
    int summaryMode;
  } cases[] = {
      {"", "root", kIndexHtml, 0},
      {"-html", "-text", kIndexHtml | kIndexText, 0},
      {"", "-excl file", 0, 0},
      {"-excl file", "-text -fsum", kIndexText, 1},
      {"", "-qsum -fsum", kIndexHtml, 2},
      {"-qsum", "", kIndexHtml, 2},
      {"", "-flist -text", kIndexHtml, 0},
      {"", "-html=1", kIndexHtml, 0},
  };
  for (const auto& c : cases) {
    const auto options = optionsOf(c.configuration, c.line);
    EXPECT_EQ(modeMaskOf(*options), c.mask) << c.line;
    EXPECT_EQ(summaryModeOf(*options), c.summaryMode) << c.line;
  }
}

TEST(DriverOptions, WhatIsLeftIsRootAndDocuments) {
  // Options without effect take their values along, a configuration file's words
  // come first, and anything that isn't an option is a document.
  const auto options = optionsOf("root one -unlimit 7\n-log early",
                                 "-bufsize 1 two -mwords 2 -mdocs 3 -oldstem "
                                 "-nostem -log late -unknown -R");
  EXPECT_EQ(positionals(*options), "root one two -unknown ");
  EXPECT_STREQ(options->str_arg("log"), "late");
  EXPECT_EQ(options->str_arg("root"), nullptr);
  EXPECT_EQ(options->int_arg("sumsent"), 2);
  EXPECT_EQ(optionsOf("-nss 5", "")->int_arg("sumsent"), 5);
}

TEST(DriverOptions, ConfigurationPath) {
  const struct {
    const char* environment;
    const char* line;
    const char* expected;
  } cases[] = {
      {nullptr, "root -html", ".vandrelleinit"}, {"", "", ".vandrelleinit"},
      {"/etc/site", "root", "/etc/site"},        {"/etc/site", "root -C mine -C yours", "yours"},
      {nullptr, "-R -C mine", "mine"},  // a -C that is meant as a value counts, too
      {"/etc/site", "-C", "/etc/site"},
  };
  for (const auto& c : cases) {
    if (c.environment != nullptr) {
      setenv("VANDRELLE_CONFIG", c.environment, 1);
    } else {
      unsetenv("VANDRELLE_CONFIG");
    }
    Arguments arguments(c.line);
    EXPECT_EQ(configurationPath(arguments.count(), arguments.values()), c.expected) << c.line;
  }
  unsetenv("VANDRELLE_CONFIG");
}

}  // namespace
}  // namespace vandrelle
