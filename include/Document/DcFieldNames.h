// Reading the NUL-terminated names of the field database's name files, and the
// 5-byte positions of its fast form.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "Storage/StStoragePos.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

struct DcFieldName {
  std::string name;
  uint32 position;  // offset in the file
};

// Reads names to the end of the stream, in order. False when the last one has no
// NUL or the stream fails.
bool getNames(std::istream& is, std::vector<DcFieldName>* names);

// A position in 5 bytes: the low 8 bits of the high word, then the low word.
constexpr int kFastPositionBytes = 5;
void storeFastPosition(unsigned char* to, const StStoragePos& position);
StStoragePos loadFastPosition(const unsigned char* from);

}  // namespace vandrelle
