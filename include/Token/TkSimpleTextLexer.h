// The lexer of plain text: a sentence ends at a mark with white space or a quote
// behind it, a paragraph at a line break with white space behind it.
#pragma once

#include "Token/TkLexerImpl.h"

namespace vandrelle {

class TkSimpleTextLexer : public TkLexerImpl {
 public:
  const char* scan(const char* begin, const char* end) override;

 protected:
  void resetImpl() override { lastWasNewline_ = 0; }
  void setFlags(char c) override;
  void setLastFlags() override;

  int lastWasNewline_ = 0;

 private:
  struct Classes;

  void step(char c);
};

}  // namespace vandrelle
