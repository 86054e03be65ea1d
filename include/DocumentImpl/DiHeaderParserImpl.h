// The usual header parser: a list of headers to index, each with a weight.
#pragma once

#include "DocumentImpl/DiHeaderParser.h"

namespace vandrelle {

class FdBag;
class FdStream;

class DiHeaderParserImpl : public DiHeaderParser {
 public:
  DiHeaderParserImpl() = default;
  ~DiHeaderParserImpl() override;

  // The value of each listed header as often as its frequency says, a blank
  // behind each: repetition is weight.
  char* getStreamHeaders(DcHeaderDocument* doc) override;
  int headerPolicy() override { return headerPolicy_; }

  void AddStreamHeader(const char* header, short frequency);
  void setHeaderPolicy(int policy) { headerPolicy_ = policy; }

 private:
  FdBag* streamHdrTable_ = nullptr;
  FdStream* pairs_ = nullptr;
  int headerPolicy_ = 1;
};

}  // namespace vandrelle
