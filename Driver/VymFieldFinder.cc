#include "Driver/VymFieldFinder.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "Document/DcHeaderDocument.h"
#include "Document/DcSentenceManager.h"
#include "Document/DcSimpleDocument.h"
#include "DocumentImpl/DiText.h"
#include "Summary/PiHtmlSummarizeOperator.h"
#include "Summary/PiSummarizer.h"
#include "Token.h"
#include "Token/CharacterClass.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr char kMetaDescription[] =
    "[Mm][Ee][Tt][Aa][ \t\n\r]+[Nn][Aa][Mm][Ee][ \t\n\r]*=[ \t\n\r]*"
    ".*[Dd][Ee][Ss][Cc][Rr][Ii][Pp][Tt][Ii][Oo][Nn].*[ \t\n\r]+"
    "[Cc][Oo][Nn][Tt][Ee][Nn][Tt][ \t\n\r]*=[ \t\n\r]*.*";

constexpr char kUntitled[] = "(Untitled)";
constexpr char kNoSummary[] = "(No Summary)";

const std::string kSummaryRoot = "/tmp/index";
constexpr int kSummarySize = 400;

constexpr int kReadLimit = 0x13FFF;
constexpr std::size_t kFirstPiece = 4096;
constexpr std::size_t kShortestText = 5;
constexpr int kShortestSentence = 3;
constexpr int kCutFromLastSentence = 3;

constexpr int kFirstLineLimit = 4096;

// Up to `limit` bytes from the start of the document, ended with a zero; null if
// there is nothing or the source is gone.
HeapAptr<char> textFromTop(DcAsciiDocument* doc, int limit) {
  const int size = std::min(doc->numCharacters(), limit);
  if (size <= 0) return nullptr;
  auto text = std::make_unique<char[]>(static_cast<std::size_t>(size) + 1);
  if (doc->characters(0, size, text.get()) == nullptr) return nullptr;
  return text;
}

// The first tag whose name begins with an m, or null.
const char* nextMeta(const char* text) {
  for (const char* p = std::strchr(text, '<'); p != nullptr; p = std::strchr(p + 1, '<')) {
    if (p[1] == 'm' || p[1] == 'M') return p;
  }
  return nullptr;
}

const char* findIgnoringCase(const char* text, std::string_view word) {
  for (; *text != '\0'; ++text) {
    if (strncasecmp(text, word.data(), word.size()) == 0) return text;
  }
  return nullptr;
}

// The bytes of a page, `limit` at most, that become the same plain text whatever
// follows them: up to a tag that is not closed among them.
std::size_t settledPart(const char* page, std::size_t limit) {
  const void* close = memrchr(page, '>', limit);
  const char* rest = close == nullptr ? page : static_cast<const char*>(close) + 1;
  const std::size_t restSize = limit - static_cast<std::size_t>(rest - page);
  const void* open = std::memchr(rest, '<', restSize);
  if (open == nullptr) return limit;
  return static_cast<std::size_t>(static_cast<const char*>(open) - page);
}

// The text may end in the middle of a word, so its last sentence loses what
// stands behind its last white space, and 3 characters at least.
void cutLastSentence(std::string& sentence) {
  std::size_t cut = sentence.size() - kCutFromLastSentence;
  while (cut > 0 && !character_class::isSpace(sentence[cut - 1])) --cut;
  sentence.resize(cut);
  sentence += "...";
}

// The first `count` sentences, each followed by two blanks. `all`: they reach to
// the end of the text. A new array that the caller owns.
char* join(DcSentenceManager& sentences, int count, bool all) {
  std::string summary;
  for (int i = 0; i < count; ++i) {
    const std::unique_ptr<DcDocument> doc(sentences.documentNum(i));
    const auto* sentence = static_cast<const DcSimpleDocument*>(doc.get());
    const int size = sentence->numCharacters();
    if (size < kShortestSentence) continue;
    std::string kept(sentence->buffer(), static_cast<std::size_t>(size));
    if (all && i == count - 1) cutLastSentence(kept);
    summary += kept;
    summary += "  ";
  }
  return copyText(summary);
}

}  // namespace

VymFieldFinder::VymFieldFinder(int summaryMode, int numSummarySentences)
    : summaryMode_(summaryMode),
      numSummarySentences_(numSummarySentences),
      metareg_(kMetaDescription),
      nullStemmer_(TkManager::NullStemmer()),
      textLexer_(TkManager::SimpleTextLexer()) {}

VymFieldFinder::~VymFieldFinder() = default;

void VymFieldFinder::sroot(const char* root) {
  sroot_ = root == nullptr ? nullptr : std::make_unique<std::string>(root);
}

char* VymFieldFinder::getSpecialField(DcDocument* doc, const char*, const char* field) {
  const std::string_view name = field;
  if (name == "title") return getTitle(doc);
  if (name == "url") return getURL(doc);
  if (name == "summary") return getSummary(doc);
  return nullptr;
}

char* VymFieldFinder::getURL(DcDocument* doc) {
  HeapAptr<char> name(doc->documentName());
  if (mapper_ == nullptr || name == nullptr) return name.release();
  return mapper_->mapFilename(name.get());
}

char* VymFieldFinder::getTitle(DcDocument* doc) {
  DcHeaderDocument* page = DESCRIPTOR_CAST(DcHeaderDocument, doc);
  char* title = page == nullptr ? nullptr : page->getHeader("title");
  return title == nullptr ? copyText(kUntitled) : removeNewLines(title);
}

char* VymFieldFinder::getSummary(DcDocument* doc) {
  if (summaryMode_ == 0) return copyText(kNoSummary);
  DcHeaderDocument* page = DESCRIPTOR_CAST(DcHeaderDocument, doc);
  if (page == nullptr) return copyText(kNoSummary);
  const HeapAptr<char> text = textFromTop(page, kReadLimit);
  if (text == nullptr || std::strlen(text.get()) < kShortestText) return copyText(kNoSummary);
  char* summary = getDescription(text.get());
  if (summary == nullptr) {
    // A header larger than what is read, or of unknown size.
    const int bodyStart =
        std::clamp(page->HeadSize(), 0, std::min(page->numCharacters(), kReadLimit));
    summary = summarize(text.get() + bodyStart);
  }
  return summary == nullptr ? copyText(kNoSummary) : removeNewLines(summary);
}

char* VymFieldFinder::summarize(const char* body) {
  switch (summaryMode_) {
    case 1:
      return firstSentences(body);
    case 2:
      return qualitySummary(body);
    default:
      return nullptr;
  }
}

char* VymFieldFinder::qualitySummary(const char* body) {
  const HeapAptr<char> text = PiHtmlSummarizeOperator::Html2Ascii(body, -1);
  const std::string root = (sroot_ ? *sroot_ : kSummaryRoot) + std::to_string(getpid());
  // A run without stem tables weighs the words as they stand.
  TkStemmer* stemmer = stemmer_ != nullptr ? stemmer_ : nullStemmer_.get();
  return PiSummarizer::summarize(text.get(), nullptr, kSummarySize, numSummarySentences_,
                                 root.c_str(), 0, stemmer, textLexer_.get());
}

// Most pages have the wanted sentences near their top. A piece of the page is
// enough if it holds two more: the last one may end elsewhere in the whole page,
// and the one before it shows that the quota does not cover all.
char* VymFieldFinder::firstSentences(const char* body) {
  if (numSummarySentences_ <= 0) return nullptr;
  const std::size_t size = std::strlen(body);
  for (std::size_t limit = kFirstPiece; limit < size; limit *= 4) {
    const HeapAptr<char> text =
        PiHtmlSummarizeOperator::Html2Ascii(body, static_cast<int>(settledPart(body, limit)));
    DcSentenceManager sentences(text.get(), nullStemmer_.get(), textLexer_.get(), 1, 0, 0);
    if (sentences.numDocuments() - 2 >= numSummarySentences_) {
      return join(sentences, numSummarySentences_, false);
    }
  }
  const HeapAptr<char> text = PiHtmlSummarizeOperator::Html2Ascii(body, static_cast<int>(size));
  DcSentenceManager sentences(text.get(), nullStemmer_.get(), textLexer_.get(), 1, 0, 0);
  const int count = sentences.numDocuments();
  if (count == 0) return nullptr;
  return join(sentences, std::min(count, numSummarySentences_), count <= numSummarySentences_);
}

// The expression is searched for, not anchored, in all of the text behind a tag:
// a description further on makes the first tag of the page match, whichever it
// is, and the value comes from the first "content" behind that tag. And where no
// description follows the first tag none follows a later one, so the text is
// searched once, however many tags it has.
char* VymFieldFinder::getDescription(char* buffer) {
  const char* tag = nextMeta(buffer);
  if (tag == nullptr || !metareg_.matches(tag)) return nullptr;
  const char* content = findIgnoringCase(tag, "CONTENT");
  const char* equals = content == nullptr ? nullptr : std::strchr(content, '=');
  if (equals == nullptr) return nullptr;
  const char* value = equals + 1;
  std::size_t size = std::strcspn(value, "<>");
  // The quote that closes the value; without quotes its last character is lost.
  if (size > 0) --size;
  auto description = std::make_unique<char[]>(size + 1);
  std::transform(value, value + size, description.get(),
                 [](char c) { return c == '"' || c == '>' ? ' ' : c; });
  return description.release();
}

char* VymFieldFinder::removeNewLines(char* buffer) {
  if (buffer == nullptr) return nullptr;
  for (char* p = buffer + std::strcspn(buffer, "\n\r\t\f"); *p != '\0';
       p += std::strcspn(p, "\n\r\t\f")) {
    *p = ' ';
  }
  return buffer;
}

char* VymSpiderFieldFinder::getURL(DcDocument* doc) {
  DcHeaderDocument* page = DESCRIPTOR_CAST(DcHeaderDocument, doc);
  if (page == nullptr) return nullptr;
  const HeapAptr<char> text = textFromTop(page, kFirstLineLimit);
  const char* lineEnd = text == nullptr ? nullptr : std::strchr(text.get(), '\n');
  if (lineEnd == nullptr) return nullptr;
  const std::string_view line(text.get(), static_cast<std::size_t>(lineEnd - text.get()));
  const std::string url = addressOf(line);
  return url.empty() ? nullptr : copyText(url);
}

DcFieldFinder* FIELD_FINDER(int summaryMode, int numSumSent, const char* sroot,
                            VymFileToURLMapper* mapper, TkStemmer* stemmer) {
  auto* finder = new VymFieldFinder(summaryMode, numSumSent);
  finder->sroot(sroot);
  finder->mapper(mapper);
  finder->stemmer(stemmer);
  return finder;
}

DcFieldFinder* SPIDER_FIELD_FINDER(int summaryMode, int numSumSent, const char* sroot,
                                   TkStemmer* stemmer) {
  auto* finder = new VymSpiderFieldFinder(summaryMode, numSumSent);
  finder->sroot(sroot);
  finder->stemmer(stemmer);
  return finder;
}

}  // namespace vandrelle
