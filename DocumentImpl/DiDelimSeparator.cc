#include "DocumentImpl/DiDelimSeparator.h"

#include <algorithm>
#include <fstream>

#include "Document/DcFileStream.h"
#include "DocumentImpl/DiHelperManager.h"
#include "DocumentImpl/DiText.h"

namespace vandrelle {

namespace {

constexpr int kSmallWindow = 4096;

std::string firstLine(const std::string& path) {
  DcSourceStream file(path.c_str(), kSmallWindow);
  DiLineReader line(file, DiLineReader::kMaxLine);
  return file.good() && line.next() ? line.text() : "";
}

}  // namespace

DiDelimSeparator::DiDelimSeparator(const char* delimiter) : delimiter_(delimiter) {}

DiDelimSeparator::DiDelimSeparator(char sep, int numseps)
    : delimiter_(static_cast<std::size_t>(std::max(numseps, 0)), sep) {}

bool DiDelimSeparator::isDelimiter(const DiLineReader& line) const {
  return !delimiter_.empty() && line.startsWith(delimiter_);
}

long DiDelimSeparator::gotoNextArticle(std::ifstream* thisFile, long* docEnd) {
  const long origpos = thisFile->tellg();
  *thisFile >> std::ws;
  thisFile->clear();  // nothing but blanks is an article too, up to the end of the file
  DiLineReader line(*thisFile);
  *docEnd = line.end();
  for (bool first = true; line.next(); first = false) {
    if (isDelimiter(line)) {
      if (first) return -1;
      break;
    }
    *docEnd = line.end();
  }
  seekTo(*thisFile, origpos);
  return line.end();
}

DiRunTimeSeparator::DiRunTimeSeparator(const char* root)
    : DiDelimSeparator(firstLine(std::string(root) + ".cus").c_str()) {}

namespace {

// A record that begins with its delimiter is read on from behind that line.
void seekBehindDelimiter(std::ifstream& file, long next) {
  file.clear();
  if (next >= 0) file.seekg(next);
}

}  // namespace

long DiMedLineSeparator::gotoNextArticle(std::ifstream* thisFile, long* docEnd) {
  const long origpos = thisFile->tellg();
  seekBehindDelimiter(*thisFile, DiDelimSeparator::gotoNextArticle(thisFile, docEnd));
  DiLineReader line(*thisFile);
  while (line.next() && line.view() != "::BRXXXXXX") {
  }
  seekTo(*thisFile, origpos);
  return line.end();
}

long DiEISeparator::gotoNextArticle(std::ifstream* thisFile, long* docEnd) {
  const long origpos = thisFile->tellg();
  seekBehindDelimiter(*thisFile, DiDelimSeparator::gotoNextArticle(thisFile, docEnd));
  DiLineReader line(*thisFile);
  bool more;
  do {
    *docEnd = line.end();
    more = line.next();
  } while (more && line.startsWith(" "));
  // The line that ended the abstract may be the mark already.
  while (more && !line.startsWith("*")) more = line.next();
  seekTo(*thisFile, origpos);
  return line.end();
}

DiSeparator* DiHelperManager::DelimSeparator(const char* delimiter) {
  return new DiDelimSeparator(delimiter);
}

DiSeparator* DiHelperManager::DelimSeparator(char sep, int numseps) {
  return new DiDelimSeparator(sep, numseps);
}

}  // namespace vandrelle
