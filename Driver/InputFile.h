// Opening of the small text files that the command line names.
#pragma once

#include <iosfwd>

namespace vandrelle {

// Opens for reading. False if that fails, and for a directory, which could be
// opened but not read.
bool openInputFile(const char* path, std::ifstream& stream);

}  // namespace vandrelle
