#include "DocumentImpl/PDFManager.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(PDFManager);

}  // namespace vandrelle
