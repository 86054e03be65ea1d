#include "Document/DcFieldNames.h"

namespace vandrelle {

bool getNames(std::istream& is, std::vector<DcFieldName>* names) {
  uint32 position = 0;
  std::string name;
  for (int c = is.get(); c != std::istream::traits_type::eof(); c = is.get()) {
    if (c != '\0') {
      name.push_back(static_cast<char>(c));
      continue;
    }
    const uint32 bytes = static_cast<uint32>(name.size()) + 1;
    names->push_back({name, position});
    position += bytes;
    name.clear();
  }
  return name.empty() && !is.bad();
}

void storeFastPosition(unsigned char* to, const StStoragePos& position) {
  to[0] = static_cast<unsigned char>(position.Hi());
  storeU32(to + 1, position.Lo());
}

StStoragePos loadFastPosition(const unsigned char* from) {
  return StStoragePos(from[0], loadU32(from + 1));
}

}  // namespace vandrelle
