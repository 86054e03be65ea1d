// Random texts in which everything that the lexers treat apart meets everything
// else.
#pragma once

#include <iterator>
#include <random>
#include <string>

namespace vandrelle {

inline std::string nastyText(std::mt19937& random, unsigned maxPieces) {
  static const char* const kPieces[] = {
      "a",        "the",   "Word",
      "s'",       "'",     "''",
      "\"",       "-",     "--",
      "-\n",      ".",     "..",
      ". ",       "!",     "? ",
      ".\"",      " ",     "  ",
      "\n",       "\r\n",  "\n ",
      "\t",       "&",     ";",
      "&eacute;", "&amp;", "<",
      "<b>",      "</p>",  "<p ",
      ">",        "<!",    "<!--",
      "-->",      "->",    "<a href='u.html?x=1' title=\"A. B\">",
      "\xe9",     "\xc0",  "\xff",
      "\xc1",     "\x80",  "{",
      "}",        "\\",    "\\par ",
      "\\b0",     "1996",  "U.S.",
      ",",        "/",     "=",
      "U",        "\v",    "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz",
      "0",        "\\'e9", "ld ",
      "P"};
  std::string nasty;
  for (auto left = 1 + random() % maxPieces; left > 0; --left) {
    if (random() % 50 == 0) {
      nasty += static_cast<char>(random() % 256);
    } else {
      nasty += kPieces[random() % std::size(kPieces)];
    }
  }
  // Long stretches without surprise, for what is done in runs.
  if (random() % 4 == 0) nasty += " <img alt='plain words here'> some more plain words; here, \n";
  return nasty;
}

}  // namespace vandrelle
