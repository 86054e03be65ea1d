#include "DocumentImpl/DiBasicFileHandler.h"

#include "Document/DcFileStream.h"
#include "DocumentImpl/DiHelperManager.h"

namespace vandrelle {

std::ifstream* DiBasicFileHandler::Open(const char* file) {
  auto* stream = new DcSourceStream(file);
  if (stream->good()) return stream;
  delete stream;
  return nullptr;
}

void DiBasicFileHandler::Close(std::ifstream* stream) { delete stream; }

DiFileHandler* BasicFileHandler() { return new DiBasicFileHandler; }

}  // namespace vandrelle
