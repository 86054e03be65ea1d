// The option table of a command: declared once, then fed from any number of sources
// (a configuration file, the argument vector), of which the last one wins.
//
// A token is matched against the flags in order of declaration. What matches none
// is a positional argument, whatever it begins with: there are no unknown options.
// The configuration file is nothing but tokens between white space, each of up to
// 255 characters; it has no comments and no quotes.
#pragma once

#include <iosfwd>

namespace vandrelle {

class FdBag;
class FdStream;

struct ClOption {
  char* name;   // by which the program asks; owned
  char* flag;   // what the user writes; owned, or the same pointer as `name`
  char* value;  // owned; null means absent
  int type;
};

class CommandLine {
 public:
  // Kinds of option.
  static constexpr int kFlag = 0;    // the token alone; its value is "1"
  static constexpr int kSingle = 1;  // the rest of the token is the value
  static constexpr int kDouble = 2;  // the next token is the value

  CommandLine();
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // Declares an option. Texts are copied. A null `flag` is the name itself, a null
  // `defval` leaves the option absent. Throws _Exception_CommandLine for the 64th.
  void arg(int type, const char* name, const char* flag, const char* defval);
  void arg_flag(const char* name, const char* flag, const char* defval) {
    arg(kFlag, name, flag, defval);
  }
  void arg_single(const char* name, const char* flag, const char* defval) {
    arg(kSingle, name, flag, defval);
  }
  void arg_double(const char* name, const char* flag, const char* defval) {
    arg(kDouble, name, flag, defval);
  }

  // Skips element 0.
  void parse(int argc, char** argv);
  void parse(std::istream& is);
  // A file that cannot be opened, and null, is skipped without a word.
  void parse(const char* filename);

  // True if the option is known and has a value, if only by default.
  bool exist_arg(const char* name) const;
  // The value; null, 0 and 0.0 for an option without one. Text stays the table's, valid
  // until the option is parsed again.
  const char* str_arg(const char* name) const;
  int int_arg(const char* name) const;
  float float_arg(const char* name) const;

  // Positional arguments by number. Each parse() counts from 0, so of two sources
  // the later one's text is kept.
  int numUnusedArgs() const;
  const char* unusedArg(int num) const;  // null if none

  // All positional arguments of all sources, in order of arrival; the keys are the
  // texts with their NUL. The stream is the caller's, the bag is not.
  FdStream* unusedArgs() const;
  FdBag* restArgs() const { return restArgs_; }

 private:
  // How many tokens were used: 0, 1 or 2. `nextOpt` may be null.
  int parseImpl(const char* thisOpt, const char* nextOpt);
  void addPositional(int argnum, const char* token);
  void addArgsByNum(int argnum, const char* token);
  const ClOption* option(const char* name) const;

  ClOption* options_;
  int numOptions_ = 0;
  FdBag* restArgs_;
  FdBag* argsByNum_;
};

}  // namespace vandrelle
