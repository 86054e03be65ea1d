#include "DocumentImpl/DiMedLineHeaderParser.h"

#include <strings.h>

#include <cstring>
#include <fstream>
#include <string>

#include "DocumentImpl/DiText.h"
#include "Fun/Fd.h"
#include "Token/CharacterClass.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr int kTableHint = 16;
constexpr int kKeywordRoom = 8;

int textSize(const char* text) { return static_cast<int>(std::strlen(text)) + 1; }

// Where the header of a record ends: behind a line's `endMark` and one byte.
// -1 at a line that starts with `refusal`, at `docEnd` and at the end of file.
int findRecordHeader(std::ifstream& file, long docEnd, long first, std::string_view endMark,
                     std::string_view refusal) {
  const long start = file.tellg();
  if (docEnd <= first) return -1;
  for (DiLineReader line(file); line.end() < docEnd && line.next();) {
    if (line.startsWith(endMark)) {
      const long body = line.begin() + static_cast<long>(endMark.size()) + 1;
      seekTo(file, body);
      return static_cast<int>(body - start);
    }
    if (line.startsWith(refusal)) {
      seekTo(file, line.begin());
      return -1;
    }
  }
  return -1;
}

}  // namespace

DiRecordHeaderParser::DiRecordHeaderParser(char headSeparator, int caseSensitivity)
    : DiKeyWordHeaderParser(headSeparator, caseSensitivity),
      multiKeys_(Fd::Table(kTableHint)),
      keywordTable_(Fd::Table(kTableHint)) {}

DiRecordHeaderParser::~DiRecordHeaderParser() {
  delete multiKeys_;
  delete keywordTable_;
}

void DiRecordHeaderParser::addKeyword(const char* field, const char* keyword) {
  keywordTable_->insert(field, textSize(field), keyword, textSize(keyword));
}

void DiRecordHeaderParser::addMultiKey(const char* keyword) {
  multiKeys_->insert(keyword, textSize(keyword), nullptr, 0);
}

char* DiRecordHeaderParser::getSearchWord(const char* header) {
  char keyword[kKeywordRoom];
  int size = sizeof keyword;
  if (!keywordTable_->find(header, textSize(header), keyword, &size)) return nullptr;
  return copyText(keyword);
}

int DiRecordHeaderParser::MultiLine(const char* searchword) {
  return multiKeys_->find(searchword, textSize(searchword), nullptr, nullptr) ? 1 : 0;
}

int DiRecordHeaderParser::stillMulti(const char* searchword, const char* line) {
  if (character_class::isSpace(line[0])) return 1;
  const std::size_t length = std::strlen(searchword);
  return (caseSensitivity_ == 1 ? strncasecmp(line, searchword, length)
                                : std::strncmp(line, searchword, length)) == 0;
}

char* DiRecordHeaderParser::getMultiLine(const char* searchword, const char* line) {
  if (character_class::isSpace(line[0])) {
    while (character_class::isSpace(*line)) ++line;
    return copyText(std::string(" ") + line);
  }
  const std::size_t length = std::strlen(searchword);
  return copyText(std::string(", ") + (line[length] == '\0' ? "" : line + length + 1));
}

DiMedLineHeaderParser::DiMedLineHeaderParser(int defaultHeaders) : DiRecordHeaderParser(':', 1) {
  static constexpr const char* kKeywords[][2] = {
      {"author", "AU:"},       {"title", "TI:"}, {"country", "CY:"},  {"keys", "MH:"},
      {"universal id", "UI:"}, {"date", "DP:"},  {"language", "LA:"}, {"type", "PT:"},
  };
  for (const auto& [field, keyword] : kKeywords) addKeyword(field, keyword);
  for (const char* keyword : {"AU:", "MH:", "TI:"}) addMultiKey(keyword);
  if (defaultHeaders != 0) {
    AddStreamHeader("title", 3);
    AddStreamHeader("keys", 2);
  }
}

int DiMedLineHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long docEnd) {
  return findRecordHeader(*thisFile, docEnd, thisFile->tellg(), "AB:", "::EI");
}

DiEIHeaderParser::DiEIHeaderParser(int defaultHeaders) : DiRecordHeaderParser(' ', 1) {
  addKeyword("author", "AU");
  addKeyword("title", "TI");
  addMultiKey("AU");
  addMultiKey("TI");
  if (defaultHeaders != 0) AddStreamHeader("title", 3);
}

int DiEIHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long docEnd) {
  return findRecordHeader(*thisFile, docEnd, 0, "AB", "MH");
}

}  // namespace vandrelle
