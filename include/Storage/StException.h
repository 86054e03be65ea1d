// What storages throw.
#pragma once

#include <iosfwd>

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(St);
EXCEPTION_FAMILY_2(StIO, St, IO);

// The tails of storage messages, as operands of a composed text:
// ` (file "<path>")`, and ` (file "<path>": <text of the last system error>)`.
struct StFileText {
  const char* path;
};
struct StFileSystemText {
  const char* path;
};
std::ostream& operator<<(std::ostream& os, StFileText text);
std::ostream& operator<<(std::ostream& os, StFileSystemText text);

}  // namespace vandrelle
