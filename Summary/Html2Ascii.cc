#include <cstring>
#include <string_view>

#include "Summary/PiHtmlSummarizeOperator.h"

namespace vandrelle {

namespace {

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

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

  void put(char c) {
    if (blankWaits_) *end_++ = ' ';
    blankWaits_ = false;
    *end_++ = c;
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
  for (const char* p = buf; p < end; ++p) {
    if (isBlank(*p)) {
      text.blank();
      continue;
    }
    if (*p == '<' && tagsClose) {
      const void* found = std::memchr(p, '>', static_cast<std::size_t>(end - p));
      if (found != nullptr) {
        const char* close = static_cast<const char*>(found);
        if (isBlockTag({p + 1, static_cast<std::size_t>(close - p - 1)})) text.sentenceMark();
        p = close;
        continue;
      }
      tagsClose = false;
    }
    text.put(*p);
  }
  text.finish();
  return place;
}

}  // namespace vandrelle
