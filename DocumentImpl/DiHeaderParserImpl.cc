#include "DocumentImpl/DiHeaderParserImpl.h"

#include <cstring>
#include <string>

#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"
#include "Fun/Fd.h"
#include "Tool/HeapText.h"

namespace vandrelle {

DiHeaderParserImpl::~DiHeaderParserImpl() {
  delete pairs_;
  delete streamHdrTable_;
}

void DiHeaderParserImpl::AddStreamHeader(const char* header, short frequency) {
  if (streamHdrTable_ == nullptr) streamHdrTable_ = Fd::Queue();
  streamHdrTable_->insert(header, static_cast<int>(std::strlen(header)) + 1, &frequency,
                          sizeof frequency);
}

char* DiHeaderParserImpl::getStreamHeaders(DcHeaderDocument* doc) {
  if (streamHdrTable_ == nullptr) return nullptr;
  if (pairs_ == nullptr) pairs_ = streamHdrTable_->iterator();
  std::string joined;
  bool any = false;
  for (pairs_->reset(); pairs_->more(); pairs_->next()) {
    const HeapAptr<char> value(doc->getHeader(static_cast<const char*>(pairs_->key())));
    if (value == nullptr) continue;
    short frequency = 0;
    int size = sizeof frequency;
    pairs_->data(&frequency, &size);
    for (int i = 0; i < frequency; ++i) joined.append(value.get()).append(1, ' ');
    any = true;
  }
  return any ? copyText(joined) : nullptr;
}

}  // namespace vandrelle
