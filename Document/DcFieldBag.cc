#include "Document/DcFieldBag.h"

#include <cstring>

#include "Fun/Fd.h"

namespace vandrelle {

namespace {
constexpr int kTableHint = 16;
}  // namespace

DcFieldBag::DcFieldBag(int ordered)
    : fieldBag_(ordered != 0 ? Fd::Queue() : Fd::Table(kTableHint)) {}

DcFieldBag::~DcFieldBag() { delete fieldBag_; }

void DcFieldBag::Add(const char* field, int required) {
  const DcFieldCheck check{required};
  fieldBag_->insert(field, static_cast<int>(std::strlen(field)) + 1, &check, sizeof check);
}

FdStream* DcFieldBag::iterator() { return fieldBag_->iterator(); }

}  // namespace vandrelle
