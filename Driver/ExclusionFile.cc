#include "Driver/ExclusionFile.h"

#include <strings.h>

#include <cstring>

#include "Document/DcDataType.h"
#include "Driver/OpenFile.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

// Four characters are compared for each word. The fourth of "PDF" is its NUL, so
// nothing may stand behind it.
int typeOfWord(const char* word) {
  if (strncasecmp(word, "TEXT", 4) == 0) return DcDataType::kText;
  if (strncasecmp(word, "HTML", 4) == 0) return DcDataType::kHtml;
  if (strncasecmp(word, "PDF", 4) == 0) return DcDataType::kPdf;
  return excludeObj::kExclude;
}

}  // namespace

excludeObj::excludeObj(const char* filename)
    : path(filename), fileOK(openInputFile(filename, file)) {
  line[0] = fileName[0] = '\0';
}

bool excludeObj::nextLine() {
  content = kExclude;
  ++number;
  if (!file.getline(line, kLineSize)) {
    if (file.bad()) {
      LOG(0, 0, "Exclusion file " << path << ": reading stopped at line " << number << ".");
    } else if (!file.eof()) {
      LOG(0, 0,
          "Exclusion file " << path << ", line " << number
                            << ": longer than 2047 characters; it and all behind it are ignored.");
    }
    return false;
  }
  const std::size_t length = std::strcspn(line, " \t");
  std::memcpy(fileName, line, length);
  fileName[length] = '\0';
  const char* rest = line + length;
  if (*rest != '\0') content = typeOfWord(rest + std::strspn(rest, " \t"));
  return true;
}

}  // namespace vandrelle
