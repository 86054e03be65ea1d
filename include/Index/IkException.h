// The failure families of the index.
#pragma once

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(Ik);                 // building and reading
EXCEPTION_FAMILY_2(IkIO, Ik, IO);     // the index's own files
EXCEPTION_FAMILY_1(IkOverflow, Ik);   // counters out of range
EXCEPTION_FAMILY_1(IkTranspose, Ik);  // the table of digests

}  // namespace vandrelle
