#include "Token/TkStemTable.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <ostream>

#include "Fun/FdTable.h"
#include "Token.h"
#include "Token/CharacterClass.h"
#include "Token/TkException.h"

namespace vandrelle {

namespace {

constexpr int kTableHint = 128;  // for 64 buckets
constexpr int kMaxGroup = 20;    // rules
// A stem never gets shorter than this by a rule, and shorter words are left alone.
constexpr int kMinStem = 3;
// More rounds than any table needs that was made in earnest; ends those that
// turn in a circle.
constexpr int kMaxRounds = 256;

bool isRowLetter(char c) { return c >= 'a' && c <= 'z'; }

// Are these the key and the rules of one group, as the compiler writes them? Rules
// without a suffix stand under the command that they begin with.
bool isGroup(const char* key, int keySize, const unsigned char* rules, int bytes) {
  constexpr int kRuleBytes = sizeof(TkStemRule);
  if (keySize != 4 || std::count(key, key + 4, key[0]) != 4) return false;
  if (bytes % kRuleBytes != 0 || bytes > kMaxGroup * kRuleBytes) return false;
  const bool isLetter = character_class::isLetter(key[0]) || key[0] == '\'';
  for (const unsigned char* rule = rules; rule < rules + bytes; rule += kRuleBytes) {
    if (rule[0] != static_cast<unsigned char>(isLetter ? key[0] : '\0')) return false;
    if (!TkStemRule::isSound(rule)) return false;
  }
  return true;
}

bool isVowel(char c) { return c == 'a' || c == 'e' || c == 'i' || c == 'o' || c == 'u'; }

}  // namespace

TkStemTable::TkStemTable(const char* ruletable) {
  const char* name = ruletable != nullptr ? ruletable : kTkDefaultStemTable;
  bool opened, whole;
  {
    // Nothing here may be left by a throw.
    std::ifstream is(name, std::ios::binary);
    opened = is.is_open();
    FdTable table(kTableHint);
    table.read(is);
    whole = is.good() && is.peek() == EOF && readTableIntoArray(table);
  }
  if (!opened) THROW(TkStemmer, "Error opening stemmer rules file " << name);
  if (!whole) THROW(TkStemmer, "The stemmer rules file is damaged: " << name);
}

bool TkStemTable::readTableIntoArray(FdTable& table) {
  const std::unique_ptr<FdIterator> groups(table.iterator());
  for (groups->reset(); groups->more(); groups->next()) {
    const auto* bytes = static_cast<const unsigned char*>(groups->data());
    if (!isGroup(static_cast<const char*>(groups->key()), groups->keySize(), bytes,
                 groups->dataSize())) {
      return false;
    }
    for (int left = groups->dataSize() / static_cast<int>(sizeof(TkStemRule)); left > 0; --left) {
      TkStemRule rule;
      rule.read(bytes);
      insertRule(rule);
      bytes += sizeof(TkStemRule);
    }
  }
  for (auto& row : stemRules_) {
    for (int column = 0; column < kLetters; ++column) {
      FastStemElem** tail = &row[column];
      while (*tail != nullptr) tail = &(*tail)->next;
      *tail = row[kLetters];
    }
  }
  return true;
}

void TkStemTable::insertRule(const TkStemRule& rule) {
  // A rule that no two letters lead to can never apply.
  if (!isRowLetter(rule.suffix[0])) return;
  if (rule.suffix[1] != '\0' && !isRowLetter(rule.suffix[1])) return;
  const int column = rule.suffix[1] == '\0' ? kLetters : rule.suffix[1] - 'a';
  FastStemElem** tail = &stemRules_[rule.suffix[0] - 'a'][column];
  while (*tail != nullptr) tail = &(*tail)->next;
  *tail = &elements_.emplace_back(FastStemElem{rule, nullptr});
}

template <typename Visit>
void TkStemTable::applyRules(char* stembuf, Visit visit) const {
  int lastchar = static_cast<int>(std::strlen(stembuf)) - 1;
  bool cont = true;
  for (int round = 0; cont && lastchar >= kMinStem && round < kMaxRounds; ++round) {
    const TkStemRule* rule = findRule(stembuf, lastchar, round == 0);
    if (rule == nullptr) break;
    const int stemmed = lastchar - rule->num_replace + rule->num_append;
    if (stemmed > kStemBuffer - 2) break;
    applyRule(stembuf, lastchar, *rule);
    lastchar = stemmed;
    cont = rule->cont != 0;
    visit(*rule);
  }
}

WmWord* TkStemTable::stem(WmWord* place, char* stembuf) const {
  applyRules(stembuf, [](const TkStemRule&) {});
  return place != nullptr ? new (place) WmWord(stembuf) : WmWord::Create(stembuf);
}

void TkStemTable::explain(char* stembuf, std::ostream& os) const {
  applyRules(stembuf,
             [&](const TkStemRule& rule) { os << "  rule " << rule << ": " << stembuf << '\n'; });
}

const TkStemRule* TkStemTable::findRule(const char* buf, int lastchar, bool isIntact) const {
  const char last = buf[lastchar], before = buf[lastchar - 1];
  if (!isRowLetter(last) || !isRowLetter(before)) return nullptr;
  for (const FastStemElem* element = stemRules_[last - 'a'][before - 'a']; element != nullptr;
       element = element->next) {
    if (isMatch(buf, lastchar, element->rule, isIntact)) return &element->rule;
  }
  return nullptr;
}

bool TkStemTable::isMatch(const char* buf, int lastchar, const TkStemRule& rule, bool isIntact) {
  if (rule.intact != 0 && !isIntact) return false;
  for (int i = 0; i < TkStemRule::kMaxSuffix && rule.suffix[i] != '\0'; ++i) {
    if (lastchar - i < 0 || rule.suffix[i] != buf[lastchar - i]) return false;
  }
  const int lets_remaining = lastchar - rule.num_replace + 1;
  if (lets_remaining > kMinStem) return true;
  return lets_remaining == kMinStem && (isVowel(buf[0]) || rule.ignoreSzConstraint != 0);
}

void TkStemTable::applyRule(char* buf, int lastchar, const TkStemRule& rule) {
  char* to = buf + lastchar - rule.num_replace + 1;
  std::memcpy(to, rule.replace, rule.num_append);
  to[rule.num_append] = '\0';
}

}  // namespace vandrelle
