// Lexers, token streams and stemmers: the interfaces, and the factories that
// make the concrete ones. What a factory returns is the caller's, to be released
// with `delete`.
#pragma once

#include <iosfwd>

#include "Token/TkLexer.h"
#include "Token/TkStemmer.h"
#include "Token/TkStemmerImpl.h"
#include "Token/TkTokenStream.h"
#include "Token/TkWordPair.h"

namespace vandrelle {

// Where the compiled tables are when none is named; those of stop words without .key
// and .ptr.
constexpr char kTkTableFolder[] = "/Vandrelle/table";
constexpr char kTkDefaultStemTable[] = "/Vandrelle/table/stem.tbl";
constexpr char kTkDefaultStopTable[] = "/Vandrelle/table/stop";
constexpr char kTkOldStopTable[] = "/Vandrelle/table/stop.old";

class TkManager {
 public:
  static TkLexer* SimpleTextLexer();
  // With `comments` not zero the text of comments counts as text.
  static TkLexer* HtmlLexer(int comments);
  static TkLexer* RTFLexer();

  // Owns none of its three; reset() comes before the first token.
  static TkTokenStream* SimpleStream(TkStemmer* stemmer, TkLexer* lexer, std::istream* is);

  // Every word is its own stem.
  static TkStemmer* NullStemmer();
  // The stemmer of an index, of two compiled tables (see TkStemTable and TkStopTable,
  // which null names default to). Throws what these throw.
  static TkStemmerImpl* Stemmer(const char* stem, const char* stop);
  static TkStemmerImpl* NewStemmer(const char* stem, const char* stop);
  // The same, but here null means the stop table kTkOldStopTable.
  static TkStemmerImpl* BasicStemmer(const char* stem, const char* stop);
  static TkStemmerImpl* FastStemmer(const char* stem, const char* stop);
  // Suffix rules and contractions, but no stop words: single letters and numbers
  // stay. Null names the table that TkStemTable does. Throws _Exception_TkStemmer
  // if the table cannot be read.
  static TkStemmerImpl* StemOnlyStemmer(const char* stem);

  // Compile the sources of tables (see TkStemTable and TkStopTable); the last one
  // both, the stop table first.
  static void CreateStemTable(const char* source, const char* table);
  static void CreateStopTable(const char* source, const char* table);
  static void CreateTables(const char* stemSource, const char* stemTable, const char* stopSource,
                           const char* stopTable);
};

}  // namespace vandrelle
