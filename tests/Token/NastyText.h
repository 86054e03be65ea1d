// Random texts in which everything that the lexers treat apart meets everything
// else, and the tokens of a stream as text.
#pragma once

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <sstream>
#include <string>

#include "Token.h"
#include "Word.h"

namespace vandrelle {

inline std::string nastyText(std::mt19937& random, unsigned maxPieces) {
  static const char* const kPieces[] = {
      "a",   "the", "Word", "s'",     "'",        "''",    "\"",   "-",    "--",   "-\n",
      ".",   "..",  ". ",   "!",      "? ",       ".\"",   " ",    "  ",   "\n",   "\r\n",
      "\n ", "\t",  "&",    ";",      "&eacute;", "&amp;", "<",    "<b>",  "</p>", "<p ",
      ">",   "<!",  "<!--", "-->",    "->",       "\xe9",  "\xc0", "\xff", "\xc1", "\x80",
      "{",   "}",   "\\",   "\\par ", "\\b0",     "1996",  "U.S.", ",",    "/",    "=",
      "U",   "\v",  "0",    "\\'e9",  "ld ",      "P"};
  static const char* const kLong[] = {"<a href='u.html?x=1' title=\"A. B\">",
                                      "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz"};
  std::string nasty;
  for (auto left = 1 + random() % maxPieces; left > 0; --left) {
    if (random() % 50 == 0) {
      nasty += static_cast<char>(random() % 256);
    } else {
      const auto piece = random() % (std::size(kPieces) + std::size(kLong));
      nasty += piece < std::size(kLong) ? kLong[piece] : kPieces[piece - std::size(kLong)];
    }
  }
  // Long stretches without surprise, for what is done in runs.
  if (random() % 4 == 0) nasty += " <img alt='plain words here'> some more plain words; here, \n";
  return nasty;
}

// Each as word@offset#number:flags and a blank.
inline std::string tokens(TkTokenStream& stream) {
  std::ostringstream os;
  for (stream.reset(); stream.more(); stream.next()) {
    const auto* word = static_cast<const WmWord*>(stream.key());
    const auto* info = static_cast<const TkLexInfo*>(stream.data());
    EXPECT_EQ(stream.keySize(), word->num_bytes());
    os << *word << '@' << info->offset << '#' << info->wordNum << ':' << info->flags << ' ';
  }
  EXPECT_EQ(stream.key(), nullptr);
  EXPECT_EQ(stream.data(), nullptr);
  EXPECT_EQ(stream.keySize() + stream.dataSize(), 0);
  return os.str();
}

}  // namespace vandrelle
