// What the containers and the disk tables throw.
#pragma once

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(Fd);
EXCEPTION_FAMILY_1(FdPair, Fd);
EXCEPTION_FAMILY_2(FdUnimpl, Fd, Unimpl);
EXCEPTION_FAMILY_1(DBM, Fd);
EXCEPTION_FAMILY_2(DBMUnimpl, DBM, Unimpl);

}  // namespace vandrelle
