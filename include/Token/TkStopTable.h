// The words that are not indexed, and those that are indexed as another word.
//
// Source text: tokens parted by white space, in pairs: a word of at most 21
// letters, then what it is indexed as, at most 22 letters, or `*` for nothing. The
// words come in the order of WmWord::cmp, and the file begins with a letter.
//
// Compiled table: a key file of kind 12 with chunks of 128 bytes (see
// KeyFile/KdStopCreator.h), the words folded to lower case.
#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

#include "Fun/FdFastWordTable.h"
#include "Token/TkStopLookup.h"

namespace vandrelle {

struct TkSourceFault;

class TkStopTable final : public TkStopLookup {
 public:
  // Loads a compiled table, given by its root name; null means
  // kTkDefaultStopTable. Throws what the key file throws, and _Exception_IO for a key
  // file of another kind.
  explicit TkStopTable(const char* tableName);
  TkStopTable(const TkStopTable&) = delete;
  TkStopTable& operator=(const TkStopTable&) = delete;

  // Compiles a source text. A word without a second token at the end is left out, a
  // word that is out of order too, with a line on the standard output. Throws
  // _Exception_IO if the source cannot be opened or does not begin with a letter,
  // _Exception_WmWordTooLarge, and what the key file throws; the former table stays
  // then.
  static void createTable(const char* flatFileName, const char* tableName);

  // Looks for the first thing in a source that createTable() would refuse or leave
  // out; false if there is one.
  static bool checkSource(std::istream& is, TkSourceFault* fault);

  int stop(const WmWord* word, WmWord* data) override;

 private:
  bool readStopFileIntoTable(const char* tableName);

  FdFastWordTable table_;
  std::vector<std::unique_ptr<WmWord>> dupList_;  // keys and replacements
};

}  // namespace vandrelle
