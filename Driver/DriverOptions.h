// The option table of vandrelleIndex and the way its sources are read, and what the
// option tables of the other programs share.
#pragma once

#include <string>
#include <vector>

#include "Tool/CommandLine.h"

namespace vandrelle {

// Declares every option of the command, in the order in which they are matched.
void declareDriverOptions(CommandLine* options);

// The configuration file: what -C names on the command line, else what the
// environment variable VANDRELLE_CONFIG names, else ".vandrelleinit" in the
// working directory. A -C inside the file itself has no effect.
std::string configurationPath(int argc, char** argv);

// For programs that refuse what is wrong: what is, as a clause, or an empty string. One of
// the options `valued` has no value, being the last argument or before another of them,
// or one of the first `words` positional arguments of `line` looks like an option.
std::string wrongOption(int argc, char** argv, const CommandLine& line,
                        const std::vector<const char*>& valued, int words);

// Reads a decimal number from `least` to `most`. False for any other text.
bool parseNumber(const char* text, int least, int most, int* value);

// How summaries are made: 0 none, 1 from the top of the text, 2 by the
// summarizer. With both options the second wins.
int summaryModeOf(CommandLine& options);

// What is indexed, as bits; no bit at all leaves it to the exclusion file.
enum ModeMask : int {
  kIndexHtml = 1,
  kIndexText = 2,
  kIndexPdf = 4,
  kIndexCustom = 16,
};
int modeMaskOf(CommandLine& options);

}  // namespace vandrelle
