// What a document type needs for its files. Who made the record owns the four;
// a user of the record owns nothing.
#pragma once

namespace vandrelle {

class DiFileHandler;
class DiHeaderParser;
class DiSeparator;
class TkLexer;

struct HelperStruct {
  TkLexer* lexer = nullptr;
  DiHeaderParser* headerParser = nullptr;
  DiSeparator* separator = nullptr;
  DiFileHandler* handler = nullptr;
};

}  // namespace vandrelle
