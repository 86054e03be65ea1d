#include "Index/IkMergeObject.h"

#include "Index/IkException.h"
#include "Index/IkProxBinder.h"

namespace vandrelle {

IkMergeObject::~IkMergeObject() { delete proxBinder_; }

void IkMergeObject::unpackSparse(IkDocumentInfo*, int*, IkProxCreator*) {
  THROW(Ik, "IkMergeObject::unpackSparse() is unimplemented in this class");
}

void IkMergeObject::newWordNumber(int) {}

}  // namespace vandrelle
