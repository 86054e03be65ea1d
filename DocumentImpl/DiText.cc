#include "DocumentImpl/DiText.h"

#include <algorithm>
#include <cstring>
#include <istream>

#include "Document/DcHeaderDocument.h"

namespace vandrelle {

namespace {

constexpr int kSearchBlock = 65536;
constexpr int kLineBlock = 4096;

char foldByte(char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalFolded(char a, char b) { return foldByte(a) == foldByte(b); }

}  // namespace

DiLineReader::DiLineReader(std::istream& stream, int size)
    : stream_(stream), size_(std::min(size, kMaxLine)) {
  const long position = stream.tellg();
  begin_ = end_ = position;
  buffer_[0] = '\0';
}

bool DiLineReader::next() {
  stream_.getline(buffer_, size_);
  const int taken = static_cast<int>(stream_.gcount());
  begin_ = end_;
  end_ += taken;
  if (stream_.eof()) {
    length_ = taken;
    return taken > 0;
  }
  if (stream_.fail() && taken == size_ - 1) {
    stream_.clear();
    length_ = taken;
    return true;
  }
  length_ = std::max(taken - 1, 0);
  return stream_.good();
}

void seekTo(std::istream& stream, long position) {
  stream.clear();
  stream.seekg(position);
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), equalFolded);
}

std::size_t findIgnoringCase(std::string_view text, std::string_view pattern, std::size_t from) {
  // All tags begin with a byte that has no case, and a search for one byte is fast.
  for (std::size_t at = text.find(pattern[0], from); at != std::string_view::npos;
       at = text.find(pattern[0], at + 1)) {
    if (startsWithIgnoringCase(text.substr(at), pattern)) return at;
  }
  return std::string_view::npos;
}

std::string headerText(DcHeaderDocument* doc) {
  const int size = std::min(doc->HeadSize(), doc->numCharacters());
  if (size <= 0 || !doc->sourceAvailable()) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  doc->characters(0, size, text.data());
  return text;
}

long findInDocument(DcAsciiDocument* doc, std::string_view pattern, bool ignoreCase, long limit) {
  limit = std::min<long>(limit, doc->numCharacters());
  const long overlap = static_cast<long>(pattern.size()) - 1;
  if (pattern.empty() || !doc->sourceAvailable()) return -1;
  std::string block;
  for (long offset = 0; offset < limit; offset += kSearchBlock - overlap) {
    const int size = static_cast<int>(std::min<long>(kSearchBlock, limit - offset));
    block.assign(static_cast<std::size_t>(size), '\0');
    if (doc->characters(offset, size, block.data()) == nullptr) return -1;
    const std::size_t found = ignoreCase ? findIgnoringCase(block, pattern) : block.find(pattern);
    if (found != std::string::npos) return offset + static_cast<long>(found + pattern.size());
  }
  return -1;
}

bool addLine(DcAsciiDocument* doc, long offset, int blockSize, std::string* line) {
  const long total = doc->numCharacters();
  while (offset < total) {
    char block[kLineBlock] = {};
    const int size = static_cast<int>(std::min<long>(blockSize, total - offset));
    if (doc->characters(offset, size, block) == nullptr) return false;
    const std::string_view text(block, static_cast<std::size_t>(size));
    const std::size_t newline = text.find('\n');
    line->append(text.substr(0, newline));
    if (newline != text.npos) break;
    offset += size;
  }
  return true;
}

std::size_t DiPageHead::look(const DiLineReader& line) {
  // The place behind the first `tag`, kept in `behind` as a place in the stream.
  const auto find = [&line](std::string_view tag, std::size_t from, long* behind) {
    if (*behind >= 0) return;
    const std::size_t found = findIgnoringCase(line.view(), tag, from);
    if (found != tag.npos) *behind = line.begin() + static_cast<long>(found + tag.size());
  };
  std::size_t from = 0;
  if (!titleSeen()) {
    find("<title>", 0, &title_);
    if (!titleSeen()) return std::string_view::npos;
    from = static_cast<std::size_t>(title_ - line.begin());
  }
  find("<body>", from, &ends_[0]);
  find("</head>", from, &ends_[1]);
  find("</title>", from, &ends_[2]);
  return from;
}

long DiPageHead::end(long otherwise) const {
  const long* found = std::find_if(ends_, std::end(ends_), [](long at) { return at >= 0; });
  return found == std::end(ends_) ? otherwise : *found;
}

std::string addressOf(std::string_view line) {
  std::string_view fields[3];
  for (std::string_view& field : fields) {
    const std::size_t tab = line.find('\t');
    if (tab == line.npos) return {};
    field = line.substr(0, tab);
    line.remove_prefix(tab + 1);
  }
  std::string address(fields[0]);
  address.append("://").append(fields[1]).append(":").append(fields[2]).append(line);
  return address;
}

}  // namespace vandrelle
