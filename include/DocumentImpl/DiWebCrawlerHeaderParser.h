// Articles of a crawler's dump: a first line of protocol, host, port and path,
// separated by tabs, then the page. While documents are added it writes three
// side tables (hash tables of the disk table kind):
//
//   <root>.url   number of the article (4 bytes) -> address with its NUL, and
//                "numdocs" with its NUL -> number of articles (4 bytes)
//   <root>.lru   address with its NUL -> number of the article
//   <root>.tit   number of the article -> title with its NUL
//
// Numbers are big-endian, 32 bits.
#pragma once

#include <string>

#include "DocumentImpl/DiHtmlHeaderParser.h"

namespace vandrelle {

class FdBag;

class DiWebCrawlerHeaderParser : public DiHtmlHeaderParser {
 public:
  // Copies what it needs of `root`.
  DiWebCrawlerHeaderParser(const char* root, int defaultHeaders);
  ~DiWebCrawlerHeaderParser() override;

  // "url" beside "title".
  char* getHeader(DcHeaderDocument* doc, const char* header) override;

  // -1 refuses an article whose first line has fewer than 3 tabs.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;

  // The count that the address table holds; 0 without one.
  int numDocs();

 private:
  static constexpr int kLine = 512;

  void openTables();
  bool writeURL(const char* line);
  void writeTitle(const std::string& title);

  FdBag* urlTable_ = nullptr;
  FdBag* lruTable_ = nullptr;
  FdBag* titleTable_ = nullptr;
  std::string titleName_;
  std::string urlName_;
  std::string lruName_;
  int docNum_ = 0;
  bool create_ = false;
};

}  // namespace vandrelle
