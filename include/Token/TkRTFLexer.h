// The lexer of Rich Text Format: control words end words and are skipped, as are
// groups that are nested three deep or more. Hexadecimal escapes are not decoded.
#pragma once

#include "Token/TkLexerImpl.h"

namespace vandrelle {

class TkRTFLexer final : public TkLexerImpl {
 public:
  void nextCharacter(char c) override;

 protected:
  void resetImpl() override;
  void setFlags(char c) override;
  void setLastFlags() override;

 private:
  bool controlStep(char c);

  int insideSlash_ = 0;     // in a control word
  int immediateSlash_ = 0;  // right behind its backslash
  int numberSlash_ = 0;     // in its numeric parameter
  int curly_ = 0;           // depth of groups
};

}  // namespace vandrelle
