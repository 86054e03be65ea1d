// A lexer around another one that delivers pairs of adjacent stems as words.
#pragma once

#include "Token/TkSimpleTextLexer.h"
#include "Token/TkStemmer.h"
#include "Token/TkWordPair.h"

namespace vandrelle {

class TkWPHLexer final : public TkSimpleTextLexer {
 public:
  // Owns none of the three. Throws _Exception_Tk if one is null.
  TkWPHLexer(TkLexer* lexer, TkStemmer* stemmer, TkWordPairHash* hash);

  void reset() override;
  void nextCharacter(char c) override { lexer_->nextCharacter(c); }
  int flags() override { return lexer_->flags(); }
  // The pair that ends with the inner lexer's word; null for the first word, and
  // for words that the stemmer drops.
  WmWord* word() override;
  void end() override { lexer_->end(); }
  int offset() override { return lexer_->offset(); }
  void offset(int characters) override { lexer_->offset(characters); }
  int wordStart() override { return lexer_->wordStart(); }
  const char* scan(const char* begin, const char* end) override { return lexer_->scan(begin, end); }

  // From now on dropped words part pairs: the word behind one starts anew.
  void breakOnStopWords() { hashStopSeparatedWords_ = 0; }

 private:
  void updateWordBufs(const WmWord* raw);

  TkLexer* lexer_;
  TkStemmer* stemmer_;
  TkWordPairHash* hash_;
  char currBuf_[64] = {};
  char prevBuf_[64] = {};
  int hashStopSeparatedWords_ = 1;
  int firstWord_ = 1;
};

}  // namespace vandrelle
