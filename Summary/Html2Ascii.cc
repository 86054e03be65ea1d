#include <cstring>
#include <string_view>

#include "Summary/PiHtmlSummarizeOperator.h"

namespace vandrelle {

namespace {

// Characters that are neither white space nor begin a tag.
struct PlainCharacters {
  bool plain[256];
  constexpr PlainCharacters() : plain() {
    for (int c = 0; c < 256; ++c) plain[c] = c != ' ' && (c < '\t' || c > '\r') && c != '<';
  }
  bool operator[](char c) const { return plain[static_cast<unsigned char>(c)]; }
};
constexpr PlainCharacters kPlain;

// The names of the tags that break the text; `<br>` has no closing form. Tags
// with attributes are not among them.
bool isBlockName(std::string_view name, bool closing) {
  char folded[8] = {};
  if (name.size() >= sizeof folded) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    folded[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  }
  const std::string_view tag(folded, name.size());
  if (tag.size() == 2 && tag[0] == 'h') return tag[1] >= '1' && tag[1] <= '6';
  for (const char* block : {"ul", "dl", "dt", "dd", "title", "li"}) {
    if (tag == block) return true;
  }
  return tag == "br" && !closing;
}

// `tag` is what stands between `<` and the next `>`.
bool isBlockTag(std::string_view tag) {
  const bool closing = !tag.empty() && tag.front() == '/';
  return isBlockName(closing ? tag.substr(1) : tag, closing);
}

// Output text with at most one blank waiting, which is written with the
// character behind it. `place` must hold as much as is put in.
class FoldedText {
 public:
  explicit FoldedText(char* place) : begin_(place), end_(place) {}

  void put(const char* begin, std::size_t size) {
    if (blankWaits_) *end_++ = ' ';
    blankWaits_ = false;
    std::memcpy(end_, begin, size);
    end_ += size;
  }
  void blank() { blankWaits_ = end_ != begin_; }
  // The mark takes the place of a blank that waits, and its own blank waits.
  void sentenceMark() {
    if (end_ == begin_ || end_[-1] == '.') return;
    *end_++ = '.';
    blankWaits_ = true;
  }
  void finish() { *end_ = '\0'; }

 private:
  char* begin_;
  char* end_;
  bool blankWaits_ = false;
};

}  // namespace

HeapAptr<char> PiHtmlSummarizeOperator::Html2Ascii(const char* buf, int len) {
  const std::size_t size = len < 0 ? std::strlen(buf) : static_cast<std::size_t>(len);
  const char* const end = buf + size;
  // Nothing gets longer: a blank or a mark stands for white space or a tag.
  auto place = std::make_unique_for_overwrite<char[]>(size + 1);
  FoldedText text(place.get());
  bool tagsClose = true;  // there may be a `>` ahead
  for (const char* p = buf; p < end;) {
    const char* run = p;
    while (p < end && kPlain[*p]) ++p;
    if (p != run) text.put(run, static_cast<std::size_t>(p - run));
    if (p == end) break;
    if (*p != '<') {
      text.blank();
      ++p;
      continue;
    }
    const void* close =
        tagsClose ? std::memchr(p, '>', static_cast<std::size_t>(end - p)) : nullptr;
    if (close == nullptr) {
      tagsClose = false;
      text.put(p++, 1);
      continue;
    }
    const char* tag = p + 1;
    p = static_cast<const char*>(close) + 1;
    if (isBlockTag({tag, static_cast<std::size_t>(p - 1 - tag)})) text.sentenceMark();
  }
  text.finish();
  return place;
}

}  // namespace vandrelle
