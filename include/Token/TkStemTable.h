// The suffix rules of the stemmer, and the loop that applies them.
//
// Source text: tokens parted by white space, one rule each, at most 39
// characters. Rules of the same first character stand together, at most 20.
//
//   leading letters or '    the suffix, its last letter first, at most 6
//   *                       only for a word that no rule has changed yet
//   a digit                 how many letters to remove
//   a letter further on     a letter to append; counts behind the digit
//   >  .                    stemming goes on, or ends, behind this rule
//   ?                       may leave 3 letters of a word with a consonant in front
//
// `sei3y.` turns -ies to -y and ends; `gni3>` removes -ing and goes on.
//
// Compiled table, big-endian: the written form of an FdTable of 64 buckets. A
// group of rules with the same first suffix letter is one pair:
//
//   offset  size         content
//   0       4            bits 31-20 hash of the key, 19-10 key size (1) and 9-0
//                        data size (3 a rule), both in units of 4 bytes
//   4       4            the letter, four times
//   8       12 per rule  rules
//
// and behind the last pair stand four zero bytes. A rule:
//
//   0       6            suffix, last letter first, zero padded
//   6       1            letters to remove
//   7       2            letters to append
//   9       1            bits 7-6 how many of these, 5 goes on, 4 untouched words
//                        only, 3 short stems allowed, 2-0 zero
//   10      2            zero
#pragma once

#include <cstdint>
#include <deque>
#include <iosfwd>

#include "Word.h"

namespace vandrelle {

class FdTable;
struct TkSourceFault;

struct TkStemRule {
  static constexpr int kMaxSuffix = 6;
  static constexpr int kMaxAppend = 2;

  char suffix[kMaxSuffix];
  std::uint8_t num_replace;
  char replace[kMaxAppend];
  std::uint8_t num_append : 2;
  std::uint8_t cont : 1;
  std::uint8_t intact : 1;
  std::uint8_t ignoreSzConstraint : 1;
  std::uint8_t unused[2];

  void zero() { *this = TkStemRule{}; }

  // The form in the file, sizeof(TkStemRule) bytes. isSound() tells whether bytes
  // can be a rule, read() takes any: what they ask for beyond kMaxAppend letters is
  // left out.
  static bool isSound(const unsigned char* from);
  void read(const unsigned char* from);
  void write(unsigned char* to) const;
};
static_assert(sizeof(TkStemRule) == 12, "TkStemRule struct size should be 12");

// The rule as a token of the source text.
std::ostream& operator<<(std::ostream& os, const TkStemRule& rule);

struct FastStemElem {
  TkStemRule rule;
  FastStemElem* next;
};

class TkStemTable {
 public:
  // Reads a compiled table; null means kTkDefaultStemTable. Throws
  // _Exception_TkStemmer if it cannot be opened, is cut short or holds what
  // createTable() does not write.
  explicit TkStemTable(const char* ruletable);
  TkStemTable(const TkStemTable&) = delete;
  TkStemTable& operator=(const TkStemTable&) = delete;

  // Compiles a source text. Throws _Exception_TkStemmer if a file cannot be
  // opened or written, or for a token that is no rule; the former table stays then.
  static void createTable(const char* rulefile, const char* ruletable);

  // Looks for the first token of a source that is no rule, or is one too many or in
  // the wrong place; false if there is one.
  static bool checkSource(std::istream& is, TkSourceFault* fault);

  // Stems the zero-terminated lower-case word in `stembuf`, a buffer of
  // kStemBuffer bytes, in place. The result is a word in `place` if that is
  // given, else a new one that the caller owns.
  static constexpr int kStemBuffer = 64;
  WmWord* stem(WmWord* place, char* stembuf) const;
  // The same, without a result but with a line for each rule that applies.
  void explain(char* stembuf, std::ostream& os) const;

 private:
  static constexpr int kLetters = 26;

  // False if the table is damaged.
  bool readTableIntoArray(FdTable& table);
  void insertRule(const TkStemRule& rule);
  // Applies one rule after the other, and tells `visit` of each.
  template <typename Visit>
  void applyRules(char* stembuf, Visit visit) const;
  // The first rule for the word that ends at `lastchar`, or null.
  const TkStemRule* findRule(const char* buf, int lastchar, bool isIntact) const;
  static bool isMatch(const char* buf, int lastchar, const TkStemRule& rule, bool isIntact);
  static void applyRule(char* buf, int lastchar, const TkStemRule& rule);

  std::deque<FastStemElem> elements_;
  // By last letter and next-to-last letter. The last column holds the rules of
  // one letter; the lists of the other columns of its row continue into it.
  FastStemElem* stemRules_[kLetters][kLetters + 1] = {};
};

}  // namespace vandrelle
