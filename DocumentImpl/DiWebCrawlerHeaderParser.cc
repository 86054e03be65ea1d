#include "DocumentImpl/DiWebCrawlerHeaderParser.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"
#include "Fun/FdBDBMTable.h"
#include "Fun/FdDBMManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr char kCountKey[] = "numdocs";
constexpr int kBindTable = 0;
constexpr int kCreateTable = 1;
constexpr long kTextAfterTitle = 256;
constexpr long kLongestScan = 32000;
constexpr std::size_t kLongestTitle = 255;
constexpr int kUrlBlock = 128;

int readCount(FdBag* table) {
  char count[4];
  int size = sizeof count;
  return table->find(kCountKey, sizeof kCountKey, count, &size) ? loadS32(count) : 0;
}

}  // namespace

DiWebCrawlerHeaderParser::DiWebCrawlerHeaderParser(const char* root, int defaultHeaders)
    : DiHtmlHeaderParser(defaultHeaders),
      titleName_(std::string(root) + ".tit"),
      urlName_(std::string(root) + ".url"),
      lruName_(std::string(root) + ".lru") {}

DiWebCrawlerHeaderParser::~DiWebCrawlerHeaderParser() {
  if (create_ && urlTable_ != nullptr) {
    char count[4];
    storeS32(count, docNum_);
    urlTable_->insert(kCountKey, sizeof kCountKey, count, sizeof count);
  }
  for (FdBag* table : {urlTable_, lruTable_, titleTable_}) {
    if (create_ && table != nullptr) static_cast<FdBDBMTable*>(table)->flush();
    delete table;
  }
}

void DiWebCrawlerHeaderParser::openTables() {
  if (urlTable_ != nullptr) return;
  const bool known = SysTools::fileExists(urlName_.c_str());
  const int mode = known ? kBindTable : kCreateTable;
  urlTable_ = FdDBMManager::Hash(urlName_.c_str(), mode);
  lruTable_ = FdDBMManager::Hash(lruName_.c_str(), mode);
  titleTable_ = FdDBMManager::Hash(titleName_.c_str(), mode);
  if (known) docNum_ = readCount(urlTable_);
}

bool DiWebCrawlerHeaderParser::writeURL(const char* line) {
  const std::string address = addressOf(line);
  if (address.empty()) return false;
  openTables();
  char number[4];
  storeS32(number, docNum_);
  const int size = static_cast<int>(address.size()) + 1;
  urlTable_->insert(number, sizeof number, address.c_str(), size);
  lruTable_->insert(address.c_str(), size, number, sizeof number);
  return true;
}

void DiWebCrawlerHeaderParser::writeTitle(const std::string& title) {
  const std::string text = title.substr(0, std::min(title.find('<'), kLongestTitle));
  char number[4];
  storeS32(number, docNum_);
  titleTable_->insert(number, sizeof number, text.c_str(), static_cast<int>(text.size()) + 1);
}

int DiWebCrawlerHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long docEnd) {
  create_ = true;
  const long start = thisFile->tellg();
  DiLineReader line(*thisFile, kLine);
  if (!line.next() || !writeURL(line.text())) return -1;

  DiPageHead head;
  long titleLineEnd = -1;
  std::string title;
  while (!head.bodySeen() && line.end() - start < kLongestScan &&
         (docEnd == 0 || line.end() < docEnd) &&
         (titleLineEnd < 0 || line.end() - titleLineEnd <= kTextAfterTitle) && line.next()) {
    const bool inTitle = title.size() <= kLongestTitle && !head.titleEnded();
    const std::size_t from = head.look(line);
    if (from == std::string_view::npos) continue;
    if (titleLineEnd < 0) titleLineEnd = line.end();
    if (inTitle) title += line.view().substr(from);
  }
  int size = 0;
  if (!head.titleSeen()) {
    seekTo(*thisFile, start);
  } else {
    writeTitle(title);
    const long headerEnd = head.end(line.end());
    seekTo(*thisFile, headerEnd);
    size = static_cast<int>(headerEnd - start);
  }
  ++docNum_;
  return size;
}

int DiWebCrawlerHeaderParser::numDocs() {
  if (urlTable_ != nullptr) return readCount(urlTable_);
  if (!SysTools::fileExists(urlName_.c_str())) return 0;
  FdBag* table = FdDBMManager::Bind(urlName_.c_str());
  const int count = readCount(table);
  delete table;
  return count;
}

char* DiWebCrawlerHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr || strcasecmp(header, "url") != 0) {
    return DiHtmlHeaderParser::getHeader(doc, header);
  }
  if (!doc->sourceAvailable()) return nullptr;
  std::string line;
  if (!addLine(doc, 0, kUrlBlock, &line)) return nullptr;
  const std::string address = addressOf(line);
  return address.empty() ? nullptr : copyText(address);
}

}  // namespace vandrelle
