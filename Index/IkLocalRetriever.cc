#include "Index/IkLocalRetriever.h"

#include "Index/IkQueryInfo.h"
#include "Index/IkRetrieverBooleanMask.h"
#include "Index/IkUnpacker.h"
#include "Index/QaBinder.h"
#include "Parser/PrSparseNodeImpl.h"

namespace vandrelle {

IkLocalRetriever::IkLocalRetriever() = default;
IkLocalRetriever::~IkLocalRetriever() = default;

PrSparseNode* IkLocalRetriever::retrieve(IkRetrieverInput*, int resultSize) {
  return new PrSparseNodeImpl(resultSize);
}

void IkLocalRetriever::info(IkIndexInfo* info) {
  info_ = info;
  sim_.bind(info);
}

void IkLocalRetriever::scoreBucketsLength(int documents) { scoreBucketsLength_ = documents; }

}  // namespace vandrelle
