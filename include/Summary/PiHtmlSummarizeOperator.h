// Summaries of stored web pages.
#pragma once

#include "Tool/HeapText.h"

namespace vandrelle {

class PiHtmlSummarizeOperator {
 public:
  // The plain text of `len` bytes of a page, or of a text that ends with a zero
  // when `len` is negative; ended with a zero itself. Tags go. White space is
  // folded into single blanks, none at the start and the end. Where a block of
  // text begins or ends (a heading, an item of a list, a line break, a title)
  // the text gets a full stop unless it has one, so that block ends end
  // sentences. Entities stay as they are.
  static HeapAptr<char> Html2Ascii(const char* buf, int len);
};

}  // namespace vandrelle
