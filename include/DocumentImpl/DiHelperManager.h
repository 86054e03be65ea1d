// Helpers for applications that put together a HelperStruct of their own.
#pragma once

namespace vandrelle {

class DiFileHandler;
class DiHeaderParser;
class DiSeparator;
class TkLexer;

// All results are new objects that the caller owns. With a non-zero
// `defaultHeaders` the parser's usual header is listed for indexing.
class DiHelperManager {
 public:
  static DiHeaderParser* HtmlHeaderParser(int defaultHeaders);
  // `lexer`, not owned, finds the end of the first paragraph.
  static DiHeaderParser* NetHeaderParser(TkLexer* lexer, int defaultHeaders);
  // Cuts at lines that begin with `delimiter`, or with `numseps` times `sep`.
  static DiSeparator* DelimSeparator(const char* delimiter);
  static DiSeparator* DelimSeparator(char sep, int numseps);
};

DiFileHandler* BasicFileHandler();

}  // namespace vandrelle
