// The document types of the command: every type that is not built in is a page
// of HTML with the helpers made here.
#pragma once

#include <memory>

#include "Document/DcUserTypes.h"
#include "DocumentImpl/HelperStruct.h"

namespace vandrelle {

class VymTypes : public DcUserTypes {
 public:
  // With non-zero `comments` the text of HTML comments is indexed too. The root
  // name of the index is not needed by these types.
  VymTypes(const char* root, int comments);
  ~VymTypes() override;
  VymTypes(const VymTypes&) = delete;
  VymTypes& operator=(const VymTypes&) = delete;

  HelperStruct* userHelpers(int /*type*/) override { return &helpers_; }
  int multiDocFiles(int /*type*/) override { return 0; }

 private:
  std::unique_ptr<TkLexer> lexer_;
  std::unique_ptr<DiHeaderParser> headerParser_;
  std::unique_ptr<DiFileHandler> handler_;
  HelperStruct helpers_;
};

}  // namespace vandrelle
