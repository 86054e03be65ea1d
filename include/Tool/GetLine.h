// Reads lines into a buffer of fixed size.
#pragma once

#include <iosfwd>

namespace vandrelle {

// Reads up to `len` - 1 characters, up to `delim`, which is taken and not stored, and
// ends the text with a NUL. A longer line comes in pieces, call by call. False, with
// an empty text, if the stream had nothing more.
bool getline(std::istream* is, char* buf, int len, char delim);

}  // namespace vandrelle
