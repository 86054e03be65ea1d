#include "Document/DcSegmentManager.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Document/DcHeaderDocument.h"
#include "Document/DcSimpleDocument.h"
#include "Fun/FdFastTable.h"
#include "Token/TkLexer.h"
#include "Tool/HeapText.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcSegmentManager);

namespace {

constexpr int kBuckets = 512;
// What a bucket is there for in a longer text, so that its chains stay short.
constexpr int kCharactersPerBucket = 256;

}  // namespace

void DcSegmentManager::initialize(TkStemmer* stemmer, TkLexer* lexer, DcAsciiDocument* doc,
                                  const char* buf, int numSegments, int slideSize, int slideType,
                                  int flagType) {
  stemmer_ = stemmer;
  lexer_ = lexer;
  doc_ = doc;
  buf_ = buf;
  numSegments_ = std::max(numSegments, 1);
  slideSize_ = std::max(slideSize, 0);
  slideType_ = slideType;
  flagType_ = flagType;
  segmentNum_ = 0;
}

DcSegmentManager::DcSegmentManager() = default;

DcSegmentManager::~DcSegmentManager() = default;

void DcSegmentManager::scanText() {
  if (doc_ == nullptr) {
    textSize_ = buf_ == nullptr ? 0 : static_cast<int>(std::strlen(buf_));
    buildTable(buf_, textSize_);
    return;
  }
  textSize_ = std::max(doc_->numCharacters() - headSize(), 0);
  const HeapAptr<char> body = ReadBuffer();
  if (body != nullptr) buildTable(body.get(), textSize_);
}

// A header whose size was never found out counts as none.
int DcSegmentManager::headSize() const {
  DcHeaderDocument* header = DESCRIPTOR_CAST(DcHeaderDocument, doc_);
  return header == nullptr ? 0 : std::max(header->HeadSize(), 0);
}

HeapAptr<char> DcSegmentManager::ReadBuffer() {
  if (textSize_ == 0) return nullptr;
  auto body = std::make_unique<char[]>(static_cast<std::size_t>(textSize_) + 1);
  if (doc_->characters(headSize(), textSize_, body.get()) == nullptr) return nullptr;
  return body;
}

void DcSegmentManager::buildTable(const char* place, int numch) {
  index_ = std::make_unique<FdFastTable>(std::max(kBuckets, numch / kCharactersPerBucket));
  for (int pos = 0; pos < numch;) insertNextSegment(place, pos, numch);
}

void DcSegmentManager::insertBoundary(int offset) {
  index_->insert(segmentNum_, static_cast<FdFastTableEntry>(offset));
  ++segmentNum_;
}

// The first call reads one character and enters the start of the text. A text
// that ends without a mark has a last boundary of 0, which documentNum() takes
// for the text's end.
void DcSegmentManager::insertNextSegment(const char* place, int& pos, int numch) {
  int segBegin = 0;
  lexer_->nextCharacter(place[pos]);
  ++pos;
  while (pos >= 2 && pos < numch) {
    lexer_->nextCharacter(place[pos]);
    if (segBegin == 0 && (lexer_->flags() & flagType_) != 0) segBegin = pos + 1;
    ++pos;
    if (segBegin > 0 && lexer_->word() != nullptr) break;
  }
  insertBoundary(segBegin);
}

int DcSegmentManager::numDocuments() {
  if (segmentNum_ == 0) return 0;
  if (slideSize_ == 0) slideSize_ = numSegments_;
  const int boundaries = static_cast<int>(segmentNum_);
  const int starts = slideType_ == 0 ? boundaries - numSegments_ : boundaries - 1;
  return starts <= 0 ? 0 : (starts - 1) / slideSize_ + 1;
}

DcDocument* DcSegmentManager::documentNum(int num) {
  const std::int64_t last = static_cast<std::int64_t>(segmentNum_) - 1;
  const std::int64_t first = std::int64_t{num} * (slideSize_ == 0 ? numSegments_ : slideSize_);
  if (num < 0 || first >= last) return nullptr;
  const std::int64_t second = std::min(first + numSegments_, last);
  FdFastTableEntry begin = 0;
  FdFastTableEntry end = 0;
  index_->find(static_cast<FdFastTableEntry>(first), &begin);
  index_->find(static_cast<FdFastTableEntry>(second), &end);

  const int pos = std::min(static_cast<int>(begin), textSize_);
  const int nextpos = end < begin ? textSize_ : std::min(static_cast<int>(end), textSize_);
  const int length = std::max(nextpos - pos, 0);
  auto place = std::make_unique<char[]>(static_cast<std::size_t>(length) + 1);
  if (doc_ == nullptr) {
    std::memcpy(place.get(), buf_ + pos, static_cast<std::size_t>(length));
    char* text = place.release();
    return new DcSimpleDocument(num, "(unknown)", text, length, text, stemmer_, lexer_);
  }
  if (doc_->characters(headSize() + pos, length, place.get()) == nullptr) return nullptr;
  const HeapAptr<char> name(numToName(num));
  char* text = place.release();
  return new DcSimpleDocument(num, name.get(), text, length, text, stemmer_, lexer_);
}

DcDocument* DcSegmentManager::documentName(const char* name) {
  const char* colon = name == nullptr ? nullptr : std::strchr(name, ':');
  return colon == nullptr ? nullptr : documentNum(std::atoi(colon + 1));
}

char* DcSegmentManager::numToName(int num) {
  if (doc_ == nullptr) return copyText("unknown");
  const HeapAptr<char> name(doc_->documentName());
  std::string text = name == nullptr ? "unknown" : name.get();
  text += flagType_ == kSentenceEnd ? ":sent" : ":para";
  text += std::to_string(num);
  return copyText(text);
}

}  // namespace vandrelle
