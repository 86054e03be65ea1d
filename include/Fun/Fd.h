// Bags without their concrete classes. The caller owns what comes back.
#pragma once

#include "Fun/FdBag.h"
#include "Fun/FdStream.h"

namespace vandrelle::Fd {

// Last in, first out; equal keys are kept.
FdList* Stack();
// First in, first out; equal keys are kept.
FdList* Queue();
// A hash table, one pair a key; `hint` as FdTable takes it, at least 2.
FdBag* Table(int hint);

}  // namespace vandrelle::Fd
