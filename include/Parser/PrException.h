// The failures of the query language.
#pragma once

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(Pr);

}  // namespace vandrelle
