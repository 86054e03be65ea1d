// Small helpers of the document classes: integers of the list files and the
// opening of input files.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "Tool/ByteOrder.h"

namespace vandrelle {

class DcDocumentUtil {
 public:
  // Decimal form in a new array that the caller owns.
  static char* intToStr(int number);

  // Big-endian integers. A read that fails answers -1.
  static void write_int32(std::ostream& os, int32 value);
  static void write_int16(std::ostream& os, std::int16_t value);
  static int32 read_int32(std::istream& is);
  static std::int16_t read_int16(std::istream& is);

  // The 32-bit integer at `pos`; -1 for a null stream or a place that cannot be
  // read. The stream stays usable either way.
  static int32 ReadAtPos(std::ifstream* stream, long pos);

  // Opens for reading, for records read mostly in ascending order; the caller
  // owns the stream. Throws _Exception_Fatal when that fails.
  static std::ifstream* ReadFile(const char* fileName);
};

}  // namespace vandrelle
