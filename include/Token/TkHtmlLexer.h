// The lexer of HTML: tags and comments are no text, and neither begin nor end
// words (`bo<b>ld</b>` is one word). Only the tags are skipped: what stands
// between <script> and </script> is text.
//
// Inside tags and comments sentence marks and line ends count as in text, a `p`
// ends a paragraph, and high bytes are text.
#pragma once

#include "Token/TkLexerImpl.h"

namespace vandrelle {

class TkHtmlLexer final : public TkLexerImpl {
 public:
  // With `comments` not zero, `<!` opens no tag and comments are text.
  explicit TkHtmlLexer(int comments) : indexComments_(comments) {}

  void nextCharacter(char c) override;
  const char* scan(const char* begin, const char* end) override;

 protected:
  void resetImpl() override;
  void setFlags(char c) override;
  void setLastFlags() override;

 private:
  struct Classes;

  void step(char c);
  bool markupStep(char c);
  const char* tagRun(const char* begin, const char* end);
  const char* commentRun(const char* begin, const char* end);
  const char* markupRun(const char* begin, const char* end);

  int insideTag_ = 0;
  int lastWasBracket_ = 0;
  int indexComments_;
  int lastWasDash_ = 0;
  int insideComment_ = 0;
};

}  // namespace vandrelle
