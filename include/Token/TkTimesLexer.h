// The lexer of a newspaper feed: plain text in which four words are field
// markers and never delivered.
#pragma once

#include <memory>

#include "Token/TkSimpleTextLexer.h"

namespace vandrelle {

class TkTimesLexer final : public TkSimpleTextLexer {
 public:
  TkTimesLexer();

  // Over-long words come out here, cut to the letters that were kept.
  WmWord* word() override;

 private:
  const std::unique_ptr<WmWord> leadWord_, textWord_, f7_, o7_;
};

}  // namespace vandrelle
