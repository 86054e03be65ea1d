// Cuts a long RTF file into pieces of about equal size at ends of paragraphs.
//
// There is no mark in the text: a lexer tells the letters of words from markup,
// and a table, which comes with the files, how many letters each file has:
//
//   <root>.sep   32-bit signed big-endian integers, one a file in the order in
//                which the files are added: the number of letters in the file
//
// A file beyond the end of the table, and any file when there is none, is one
// article. It keeps state between calls, so files are to be cut one after the
// other.
#pragma once

#include <cstdint>
#include <vector>

#include "DocumentImpl/DiSeparator.h"

namespace vandrelle {

class TkLexer;

class DiMediorSeparator : public DiSeparator {
 public:
  static constexpr int kLettersPerPiece = 10000;

  // Does not own `lexer`. Reads the table of `root` whole. `sepSize`: letters that
  // a piece should have, at least 1.
  DiMediorSeparator(TkLexer* lexer, const char* root, int sepSize = kLettersPerPiece);

  long gotoNextArticle(std::ifstream* thisFile, long* docEnd) override;

 private:
  void beginFile(const std::ifstream* file);

  TkLexer* lexer_;
  int filenum_ = -1;
  std::vector<std::int32_t> sepTable_;
  int sepSize_;
  const std::ifstream* lastFile_ = nullptr;
  int currentSepSize_ = 0;
};

}  // namespace vandrelle
