// The data type of a file: who adds it, and with which lexer, header parser, separator
// and file handler (DiHelperDistributor has the table of those built in).
#pragma once

namespace vandrelle {

struct DcDataType {
  enum Number : int {
    kExcluded = 0,
    kText = 1,
    kHtml = 2,
    kUsenetText = 3,  // headers are text
    kUsenet = 4,
    kRtf = 5,
    kEms = 6,
    kMedLine = 7,
    kClari = 8,
    kIdg = 9,
    kCrawler = 10,
    kCompressedDump = 11,
    kEi = 12,
    kTimes = 13,
    kCrawlerToo = 14,  // the same as 10
    kPdf = 15,         // a form of its own: neither one document a file nor articles
    kCustom = 16,
    // Up to 63 built in. From here on an application's, with its own helpers:
    kFirstUser = 2048,
    // ... with its own creator and manager, too:
    kFirstUserForm = 32768
  };
};

}  // namespace vandrelle
