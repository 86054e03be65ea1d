// What the tools throw.
#pragma once

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(BitField);
EXCEPTION_FAMILY(BitVector);
EXCEPTION_FAMILY(CommandLine);
EXCEPTION_FAMILY(Huffman);
EXCEPTION_FAMILY(NameManager);
EXCEPTION_FAMILY_1(SysTools, System);
EXCEPTION_FAMILY(Version);

}  // namespace vandrelle
