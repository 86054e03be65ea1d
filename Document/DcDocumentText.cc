#include "Document/DcDocumentText.h"

#include <algorithm>
#include <istream>

namespace vandrelle {

char* readDocumentText(std::istream* stream, int start, int size, long offset, int count,
                       char* place) {
  if (stream == nullptr) return nullptr;
  if (place == nullptr) place = new char[static_cast<std::size_t>(std::max(count, 0))]();
  const long wanted = std::min<long>(count, size - offset);
  if (wanted <= 0 || start + offset < 0) return place;
  stream->clear();
  stream->seekg(start + offset);
  stream->read(place, wanted);
  if (!*stream) stream->clear();
  return place;
}

}  // namespace vandrelle
