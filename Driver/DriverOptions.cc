#include "Driver/DriverOptions.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "Tool/PrintableText.h"

namespace vandrelle {

void declareDriverOptions(CommandLine* options) {
  struct Option {
    const char* name;
    const char* flag;
    bool takesValue;
    const char* defaultValue;
  };
  // unlimit, bufsize, mwords, mdocs, oldstem, nostem and pdf are accepted without
  // effect: old command lines name them, and those with a value must consume it.
  static const Option kOptions[] = {
      {"version", "-v", false, nullptr},
      {"cffile", "-C", true, nullptr},
      {"root", "-R", true, nullptr},
      {"stemmer", "-stem", true, nullptr},
      {"stopper", "-stop", true, nullptr},
      {"log", "-log", true, nullptr},
      {"progress", "-prog", true, nullptr},
      {"exclude", "-excl", true, nullptr},
      {"unlimit", "-unlimit", true, nullptr},
      {"bufsize", "-bufsize", true, nullptr},
      {"mwords", "-mwords", true, nullptr},
      {"mdocs", "-mdocs", true, nullptr},
      {"filelist", "-flist", true, nullptr},
      {"userlist", "-ulist", true, nullptr},
      {"pidfile", "-pidfile", true, nullptr},
      {"spider", "-spider", true, nullptr},
      {"sumsent", "-nss", true, "2"},
      {"summaryroot", "-sroot", true, nullptr},
      {"mapfile", "-mapfile", true, nullptr},
      {"oldstem", "-oldstem", false, nullptr},
      {"nostem", "-nostem", false, nullptr},
      {"html", "-html", false, nullptr},
      {"text", "-text", false, nullptr},
      {"pdf", "-pdf", false, nullptr},
      {"transpose", "-transpose", false, nullptr},
      {"fastsum", "-fsum", false, nullptr},
      {"qualitysum", "-qsum", false, nullptr},
      {"htmlcomments", "-comments", false, nullptr},
      {"sumfile", "-sumfile", false, nullptr},
  };
  for (const Option& option : kOptions) {
    if (option.takesValue) {
      options->arg_double(option.name, option.flag, option.defaultValue);
    } else {
      options->arg_flag(option.name, option.flag, option.defaultValue);
    }
  }
}

std::string configurationPath(int argc, char** argv) {
  CommandLine first;
  first.arg_double("cffile", "-C", nullptr);
  first.parse(argc, argv);
  const char* named = first.str_arg("cffile");
  if (named != nullptr && *named != '\0') return named;
  named = std::getenv("VANDRELLE_CONFIG");
  if (named != nullptr && *named != '\0') return named;
  return ".vandrelleinit";
}

std::string wrongOption(int argc, char** argv, const CommandLine& line,
                        const std::vector<const char*>& valued, int words) {
  const auto isValued = [&](const char* token) {
    return std::any_of(valued.begin(), valued.end(),
                       [token](const char* flag) { return std::strcmp(token, flag) == 0; });
  };
  for (int i = 1; i < argc; ++i) {
    if (!isValued(argv[i])) continue;
    if (i + 1 == argc || isValued(argv[i + 1])) return std::string(argv[i]) + " needs a value";
    ++i;
  }
  for (int i = 0; i < std::min(words, line.numUnusedArgs()); ++i) {
    const char* const word = line.unusedArg(i);
    if (word[0] == '-') return "there is no option '" + printable(word) + "'";
  }
  return {};
}

bool parseNumber(const char* text, int least, int most, int* value) {
  const char* const end = text + std::strlen(text);
  const auto [rest, error] = std::from_chars(text, end, *value);
  return error == std::errc() && rest == end && least <= *value && *value <= most;
}

int summaryModeOf(CommandLine& options) {
  int mode = 0;
  if (options.exist_arg("fastsum")) mode = 1;
  if (options.exist_arg("qualitysum")) mode = 2;
  return mode;
}

int modeMaskOf(CommandLine& options) {
  int mask = 0;
  if (options.exist_arg("html")) mask |= kIndexHtml;
  if (options.exist_arg("text")) mask |= kIndexText;
  if (mask == 0 && !options.exist_arg("exclude")) mask = kIndexHtml;
  return mask;
}

}  // namespace vandrelle
