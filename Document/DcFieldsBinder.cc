#include "Document/DcFieldsBinder.h"

namespace vandrelle {

DcFieldsBinder::DcFieldsBinder(const char* /*root*/) {}

DcFieldsBinder::~DcFieldsBinder() = default;

bool DcFieldsBinder::gotoDoc(int /*num*/) { return false; }

bool DcFieldsBinder::getField(DcFieldInfo& /*field*/) { return false; }

}  // namespace vandrelle
