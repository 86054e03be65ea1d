// The failure families of documents, their managers and file lists.
#pragma once

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(Doc);
EXCEPTION_FAMILY_2(DocIO, Doc, IO);
EXCEPTION_FAMILY_2(DocMgr, Doc, IO);
EXCEPTION_FAMILY_2(FileInd, Doc, IO);
EXCEPTION_FAMILY_2(FileMgr, Doc, IO);
EXCEPTION_FAMILY_1(ListCr, IO);
EXCEPTION_FAMILY_1(ListMgr, IO);
EXCEPTION_FAMILY(indexmgr);
EXCEPTION_FAMILY(HttpTools);
EXCEPTION_FAMILY_2(HttpToolsSys, HttpTools, System);

}  // namespace vandrelle
