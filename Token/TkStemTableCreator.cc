#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "Fun/FdTable.h"
#include "Token/CharacterClass.h"
#include "Token/TkException.h"
#include "Token/TkSourceReader.h"
#include "Token/TkStemTable.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

using character_class::isDigit;
using character_class::isLetter;

constexpr int kTableHint = 128;  // for 64 buckets
constexpr int kMaxToken = 39;
constexpr std::size_t kMaxGroup = 20;

// The rule of a token; false if there is none.
bool parseRule(const std::string& token, TkStemRule* rule) {
  rule->zero();
  std::size_t at = 0;
  while (at < token.size() && (isLetter(token[at]) || token[at] == '\'')) {
    if (at == TkStemRule::kMaxSuffix) return false;
    rule->suffix[at] = token[at];
    ++at;
  }
  int replacing = 0;
  bool counts = false;
  for (; at < token.size(); ++at) {
    const char c = token[at];
    if (isLetter(c)) {
      if (replacing == TkStemRule::kMaxAppend) return false;
      rule->replace[replacing++] = c;
      // Two letters are the most, so two bits hold the count.
      if (counts) rule->num_append = (rule->num_append + 1) & 3;
    } else if (isDigit(c)) {
      rule->num_replace = static_cast<std::uint8_t>(c - '0');
      counts = true;
    } else if (c == '*') {
      rule->intact = 1;
    } else if (c == '>') {
      rule->cont = 1;
    } else if (c == '.') {
      rule->cont = 0;
    } else if (c == '?') {
      rule->ignoreSzConstraint = 1;
    } else {
      return false;
    }
  }
  return true;
}

// The rules that have the same first character, in the form of the file.
class Group {
 public:
  explicit Group(FdTable* table) : table_(table) {}

  // False if the group is full.
  bool add(const TkStemRule& rule) {
    if (bytes_.size() == kMaxGroup * sizeof(TkStemRule)) return false;
    bytes_.resize(bytes_.size() + sizeof(TkStemRule));
    rule.write(&bytes_[bytes_.size() - sizeof(TkStemRule)]);
    return true;
  }

  // Enters the group in the table and starts the one of `first`; false if that
  // letter had its group already.
  bool change(char first) {
    if (!bytes_.empty()) {
      const std::string key(4, first_);
      table_->insert(key.data(), 4, bytes_.data(), static_cast<int>(bytes_.size()));
    }
    bytes_.clear();
    first_ = first;
    bool& seen = seen_[static_cast<unsigned char>(first)];
    const bool fresh = !seen;
    seen = true;
    return fresh;
  }

  bool starts(char first) const { return bytes_.empty() || first != first_; }

 private:
  FdTable* table_;
  std::vector<unsigned char> bytes_;
  char first_ = 0;
  bool seen_[256] = {};
};

bool compile(std::istream& is, FdTable* table, TkSourceFault* fault) {
  Group group(table);
  TkSourceReader reader(&is);
  const auto broken = [&](const char* reason) {
    *fault = reader.fault(reason);
    return false;
  };
  while (reader.next()) {
    const std::string& token = reader.token();
    TkStemRule rule;
    if (token.size() > kMaxToken) return broken("a rule has at most 39 characters");
    if (!parseRule(token, &rule)) return broken("this is no rule");
    if (group.starts(token[0]) && !group.change(token[0])) {
      return broken("the rules of its first letter stand further up");
    }
    if (!group.add(rule)) return broken("more than 20 rules have this first letter");
  }
  if (is.bad()) {
    *fault = reader.unreadable();
    return false;
  }
  group.change('\0');
  return true;
}

enum class Outcome { kDone, kNoSource, kBadRule, kNotWritten };

// Throws nothing: what it opens is closed when it returns.
Outcome createQuietly(const char* rulefile, const char* ruletable) {
  std::ifstream is(rulefile);
  if (!is.is_open()) return Outcome::kNoSource;
  FdTable table(kTableHint);
  TkSourceFault fault;
  if (!compile(is, &table, &fault)) return is.bad() ? Outcome::kNoSource : Outcome::kBadRule;
  // What isn't a file, a device for one, must not be replaced by one.
  std::error_code unknown;
  if (std::filesystem::exists(ruletable, unknown) &&
      !std::filesystem::is_regular_file(ruletable, unknown)) {
    return Outcome::kNotWritten;
  }
  // The former table stays until the new one is whole.
  const std::string unfinished = std::string(ruletable) + ".new";
  std::ofstream os(unfinished, std::ios::binary | std::ios::trunc);
  table.write(os);
  os.close();
  if (os && std::rename(unfinished.c_str(), ruletable) == 0) return Outcome::kDone;
  SysTools::removeFile(unfinished.c_str());
  return Outcome::kNotWritten;
}

}  // namespace

void TkStemTable::createTable(const char* rulefile, const char* ruletable) {
  switch (createQuietly(rulefile, ruletable)) {
    case Outcome::kDone:
      break;
    case Outcome::kNoSource:
      THROW(TkStemmer, "Error opening stem table source file " << rulefile);
    case Outcome::kBadRule:
      THROW(TkStemmer, "Invalid rule found during creation.");
    case Outcome::kNotWritten:
      THROW(TkStemmer, "The stemmer rules file could not be written: " << ruletable);
  }
}

bool TkStemTable::checkSource(std::istream& is, TkSourceFault* fault) {
  FdTable table(kTableHint);
  return compile(is, &table, fault);
}

}  // namespace vandrelle
