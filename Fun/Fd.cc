#include "Fun/Fd.h"

#include "Fun/FdQueue.h"
#include "Fun/FdTable.h"

namespace vandrelle::Fd {

FdList* Stack() { return new FdStack; }

FdList* Queue() { return new FdQueue; }

FdBag* Table(int hint) { return new FdTable(hint); }

}  // namespace vandrelle::Fd
