#include "DocumentImpl/DiBasicFileHandler.h"

#include "Document/DcFileStream.h"
#include "DocumentImpl/DiHelperManager.h"

namespace vandrelle {

namespace {

// While files are added only their beginnings are read, in most cases.
constexpr int kAddingWindow = 8192;

}  // namespace

std::ifstream* DiBasicFileHandler::Open(const char* file) {
  auto* stream =
      new DcSourceStream(file, mode_ == 0 ? kAddingWindow : DcSourceStream::kSourceWindow);
  if (stream->good()) return stream;
  delete stream;
  return nullptr;
}

void DiBasicFileHandler::Close(std::ifstream* stream) { delete stream; }

DiFileHandler* BasicFileHandler() { return new DiBasicFileHandler; }

}  // namespace vandrelle
