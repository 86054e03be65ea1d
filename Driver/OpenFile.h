// Opening of the small files around an index: those that the command line names, logs,
// and what a run notes beside the index.
#pragma once

#include <iosfwd>

namespace vandrelle {

// Opens for reading. False if that fails, and for a directory, which could be
// opened but not read.
bool openInputFile(const char* path, std::ifstream& stream);

// Opens for writing, emptied; a new file has the permission bits 0644 less those that
// the user's mask takes away. False if that fails.
bool openOutputFile(const char* path, std::ofstream& stream);

}  // namespace vandrelle
