#include "Tool/CommandLine.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <utility>

#include "Fun/Fd.h"
#include "Fun/FdPair.h"
#include "Fun/FdWrapper.h"
#include "Tool/HeapText.h"
#include "Tool/ToolException.h"

namespace vandrelle {

namespace {

constexpr int kMaxOptions = 64;
constexpr int kMaxToken = 256;

void setValue(ClOption& option, char* value) {
  delete[] option.value;
  option.value = value;
}

bool readToken(std::istream& is, char (&token)[kMaxToken]) { return bool(is >> token); }

}  // namespace

CommandLine::CommandLine()
    : options_(new ClOption[kMaxOptions]()), restArgs_(Fd::Queue()), argsByNum_(Fd::Table(8)) {}

CommandLine::~CommandLine() {
  for (int i = 0; i < numOptions_; ++i) {
    if (options_[i].flag != options_[i].name) delete[] options_[i].flag;
    delete[] options_[i].name;
    delete[] options_[i].value;
  }
  delete[] options_;
  {
    FdCCStream<int, char*> texts(argsByNum_->iterator());
    for (; texts.more(); texts.next()) delete[] texts.data();
  }
  delete argsByNum_;
  delete restArgs_;
}

// The row that fills the table is stored all the same: the failure tells that there
// is no room for another.
void CommandLine::arg(int type, const char* name, const char* flag, const char* defval) {
  if (numOptions_ < kMaxOptions) {
    ClOption& row = options_[numOptions_++];
    row.name = copyText(name);
    row.flag = flag != nullptr ? copyText(flag) : row.name;
    row.value = copyText(defval);
    row.type = type;
  }
  if (numOptions_ == kMaxOptions) THROW(CommandLine, "Too many options (compile-time limit)");
}

void CommandLine::parse(int argc, char** argv) {
  int argnum = 0;
  for (int i = 1; i < argc;) {
    const int used = parseImpl(argv[i], i + 1 < argc ? argv[i + 1] : nullptr);
    if (used == 0) addPositional(argnum++, argv[i]);
    i += used == 0 ? 1 : used;
  }
}

void CommandLine::parse(std::istream& is) {
  char first[kMaxToken];
  char second[kMaxToken];
  char(*thisOpt)[kMaxToken] = &first;
  char(*nextOpt)[kMaxToken] = &second;
  int argnum = 0;
  if (!readToken(is, *thisOpt)) return;
  bool hasNext = readToken(is, *nextOpt);
  for (;;) {
    const int used = parseImpl(*thisOpt, hasNext ? *nextOpt : nullptr);
    if (used == 0) addPositional(argnum++, *thisOpt);
    // A stream that ended with its last token has not failed yet.
    if (is.fail()) return;
    if (used == 2) {
      if (!readToken(is, *thisOpt)) return;
    } else {
      std::swap(thisOpt, nextOpt);
    }
    hasNext = readToken(is, *nextOpt);
  }
}

void CommandLine::parse(const char* filename) {
  if (filename == nullptr) return;
  std::ifstream is(filename);
  if (is.good()) parse(is);
}

int CommandLine::parseImpl(const char* thisOpt, const char* nextOpt) {
  const std::size_t length = std::strlen(thisOpt);
  for (int i = 0; i < numOptions_; ++i) {
    ClOption& row = options_[i];
    const std::size_t n = std::strlen(row.flag);
    if (n < length && row.type != kSingle) continue;
    if (std::strncmp(thisOpt, row.flag, n) != 0) continue;
    switch (row.type) {
      case kFlag:
        setValue(row, copyText("1"));
        return 1;
      case kSingle:
        setValue(row, copyText(thisOpt + n));
        return 1;
      default:
        setValue(row, copyText(nextOpt));
        return 2;
    }
  }
  return 0;
}

// A token that no pair can hold is longer than any usable path: it is kept cut, so
// that whoever tries the path reports it, instead of the whole run ending here.
void CommandLine::addPositional(int argnum, const char* token) {
  const std::string kept(token, strnlen(token, FdPair::kMaxBytes - 1));
  restArgs_->insert(kept.c_str(), static_cast<int>(kept.size()) + 1, nullptr, 0);
  addArgsByNum(argnum, token);
}

void CommandLine::addArgsByNum(int argnum, const char* token) {
  char* former = nullptr;
  int size = static_cast<int>(sizeof former);
  argsByNum_->find(&argnum, static_cast<int>(sizeof argnum), &former, &size);
  char* text = copyText(token);
  argsByNum_->insert(&argnum, static_cast<int>(sizeof argnum), &text,
                     static_cast<int>(sizeof text));
  delete[] former;
}

const ClOption* CommandLine::option(const char* name) const {
  for (int i = 0; name != nullptr && i < numOptions_; ++i) {
    if (std::strcmp(options_[i].name, name) == 0) return &options_[i];
  }
  return nullptr;
}

bool CommandLine::exist_arg(const char* name) const { return str_arg(name) != nullptr; }

const char* CommandLine::str_arg(const char* name) const {
  const ClOption* found = option(name);
  return found != nullptr ? found->value : nullptr;
}

int CommandLine::int_arg(const char* name) const {
  const char* value = str_arg(name);
  if (value == nullptr) return 0;
  const long number = std::strtol(value, nullptr, 10);
  if (number > INT_MAX) return INT_MAX;
  if (number < INT_MIN) return INT_MIN;
  return static_cast<int>(number);
}

float CommandLine::float_arg(const char* name) const {
  const char* value = str_arg(name);
  return value != nullptr ? static_cast<float>(std::strtod(value, nullptr)) : 0.0f;
}

int CommandLine::numUnusedArgs() const { return argsByNum_->numElements(); }

const char* CommandLine::unusedArg(int num) const {
  char* text = nullptr;
  int size = static_cast<int>(sizeof text);
  argsByNum_->find(&num, static_cast<int>(sizeof num), &text, &size);
  return text;
}

FdStream* CommandLine::unusedArgs() const { return restArgs_->iterator(); }

}  // namespace vandrelle
