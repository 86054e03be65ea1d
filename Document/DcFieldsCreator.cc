#include "Document/DcFieldsCreator.h"

namespace vandrelle {

DcFieldsCreator::DcFieldsCreator(const char* /*root*/, int /*okexist*/) {}

DcFieldsCreator::~DcFieldsCreator() = default;

void DcFieldsCreator::add(const char* /*fieldName*/, const char* /*fieldValue*/) {}

void DcFieldsCreator::endDoc() { ++numDocuments_; }

void DcFieldsCreator::flush() {}

}  // namespace vandrelle
