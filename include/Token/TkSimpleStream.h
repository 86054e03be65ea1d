// Tokens of an input stream.
#pragma once

#include <istream>

#include "Token/TkTokenStream.h"

namespace vandrelle {

class TkSimpleStream final : public TkTokenStream {
 public:
  // `is` is not owned. reset() reads on from where it stands.
  TkSimpleStream(TkStemmer* stemmer, TkLexer* lexer, std::istream* is)
      : TkTokenStream(stemmer, lexer), is_(is) {}

 protected:
  // The end is known when a read has met it.
  int tokEnd() override { return is_->eof(); }
  int tokNextCharacter() override;
  int tokPeekCharacter() override;

 private:
  std::istream* is_;
};

}  // namespace vandrelle
