// What the text analysis throws.
#pragma once

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(Tk);
EXCEPTION_FAMILY_1(TkStemmer, IO);

}  // namespace vandrelle
