#include <utility>
#include <vector>

#include "Document/DocumentFixture.h"
#include "DocumentImpl/DiEMSHeaderParser.h"
#include "DocumentImpl/DiHtmlHeaderParser.h"
#include "DocumentImpl/DiMedLineHeaderParser.h"
#include "DocumentImpl/DiNntpHeaderParser.h"
#include "DocumentImpl/DiRunTimeHeaderParser.h"
#include "DocumentImpl/DiTimesHeaderParser.h"
#include "DocumentImpl/DiWebCrawlerHeaderParser.h"
#include "Fun/FdBag.h"
#include "Fun/FdDBMManager.h"
#include "Token.h"
#include "Token/TkLexer.h"

namespace vandrelle {
namespace {

using Headers = std::vector<std::pair<const char*, std::string>>;

constexpr long kWhole = 0;   // the document runs to the end of the file
constexpr long kSized = -1;  // it ends there too, but its end is told

struct ParserCase {
  const char* what;
  std::string text;
  int headSize;
  Headers headers = {};
  long docEnd = kWhole;
};

class HeaderParserTest : public DocumentFixture {
 protected:
  void check(DiHeaderParser& parser, const std::vector<ParserCase>& cases) {
    for (const ParserCase& test : cases) {
      SCOPED_TRACE(test.what);
      const long docEnd = test.docEnd == kSized ? static_cast<long>(test.text.size()) : test.docEnd;
      ParsedDocument parsed(parser, write("page", test.text), docEnd);
      EXPECT_EQ(parsed.headSize, test.headSize);
      for (const auto& [name, value] : test.headers) EXPECT_EQ(parsed.header(name), value) << name;
    }
  }
};

TEST_F(HeaderParserTest, Html) {
  DiHtmlHeaderParser parser(1);
  const std::string longTitle(300, 't'), titled = "<title>a</title>\n1\n2\n";
  check(
      parser,
      {{"no title", "<html><body>text", 0, {{"title", "(null)"}}},
       {"title alone",
        "<TITLE> \n A page</TITLE>rest\n",
        24,
        {{"Title", "A page"}, {"author", "(null)"}}},
       {"head before title", "<title>a</title></HEAD>more", 23, {{"title", "a"}}},
       {"body first", "<title>a</title></head>\n<body>more", 30, {{"title", "a"}}},
       {"body with attributes is no mark", "<title>a</title></head><body x=1>", 23},
       {"two lines behind the title", "<title>a</title>\n1\n</head>\n<body>", 26, {{"title", "a"}}},
       {"not the third", "<title>a</title>\n1\n2\n<body>", 16, {{"title", "a"}}},
       {"no end in reach", "<title>a\nb\nc\nd</title>", 13, {{"title", "a\nb\nc\n"}}},
       {"ends by body", "<title>a<b>c<BODY>", 18, {{"title", "a<b>c"}}},
       {"tag across pieces is not seen", std::string(252, ' ') + "<title>a</title>", 0},
       {"long title", "<title>" + longTitle, 307, {{"title", longTitle.substr(0, 255)}}},
       {"empty title", "<title></title>", 15, {{"title", ""}}},
       {"just small enough", std::string(32744, '\n') + titled, 32760, {{"title", "a"}}},
       {"too large: all is header", std::string(32752, '\n') + titled, -1, {{"title", "a"}}}});
}

TEST_F(HeaderParserTest, HtmlTitleFarIntoALargeHeader) {
  DiHtmlHeaderParser parser(1);
  // Across a boundary of the search's blocks.
  for (const int before : {65530, 65536 - 7, 65536 - 6, 65536, 140000}) {
    const std::string text =
        std::string(static_cast<std::size_t>(before), '\n') + "<title>far</title>";
    ParsedDocument parsed(parser, write("page", text));
    EXPECT_EQ(parsed.headSize, -1);
    EXPECT_EQ(parsed.header("title"), "far") << before;
  }
}

TEST_F(HeaderParserTest, HeadersToIndexAreRepeated) {
  DiMedLineHeaderParser medline(1);
  ParsedDocument record(medline, write("record", "TI: One\nMH: Two\nAB: text\n"), 25);
  EXPECT_EQ(taken(record.document->getStreamHeaders()), "One One One Two Two ");
  EXPECT_EQ(medline.headerPolicy(), 1);
  DiHtmlHeaderParser html(0);
  ParsedDocument page(html, write("page", "<title>a</title>"));
  EXPECT_EQ(taken(page.document->getStreamHeaders()), "(null)");
}

TEST_F(HeaderParserTest, Nntp) {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  DiNntpHeaderParser parser(lexer.get(), 1);
  const std::string article = "From: me\nSUBJECT: The news\nLines: 2\n\nText.\n";
  check(parser,
        {{"article",
          article,
          37,
          {{"title", "The news"}, {"subject:", "The news"}, {"from", "me"}, {"date", "(null)"}},
          kSized},
         {"headers to the end of the file", "From: me\nSubject: x\n", -1},
         {"headers to the end of the last article", "From: me\nSubject: x\n", -1, {}, kSized},
         {"headers to the end of an article", "From: me\nSubject: x\nmore", 0, {}, 20},
         {"value of nothing", "Subject:\n\n", 10, {{"subject", ""}}}});
  DiNntpHeaderParser lexerless(nullptr, 1);
  check(lexerless, {{"without a lexer", article, 0, {{"title", "(null)"}}}});
}

TEST_F(HeaderParserTest, Clari) {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  DiClariHeaderParser parser(lexer.get(), 1);
  check(parser, {{"text", "Subject: x\n\n  \nSome text", 12, {{"title", "x"}}},
                 {"picture", "Subject: x\n\n\n A GIF file\n", -1},
                 {"nothing", "Subject: x\n\n#! rnews 10\n", -1},
                 {"picture in the second line", "Subject: x\n\nText\nGIF\n", 12}});
}

TEST_F(HeaderParserTest, MedLine) {
  DiMedLineHeaderParser parser(1);
  const std::string record =
      "UI: 9\nAU: First A\nau: Second B\nTI: A long\n  title\nMH: k\nAB: Text\n::EI\n";
  check(parser, {{"record",
                  record,
                  60,
                  {{"author", "First A, Second B"},
                   {"title", "A long title"},
                   {"keys", "k"},
                   {"universal id", "9"},
                   {"language", "(null)"},
                   {"abstract", "(null)"}},
                  kSized},
                 {"no end told", record, -1},
                 {"no abstract", "TI: a\n::EI\nAB: x\n", -1, {}, kSized},
                 {"abstract behind the end", "TI: a\nAB: x\n", -1, {}, 6},
                 {"no mark at all", "TI: a\n", -1, {}, kSized}});
}

TEST_F(HeaderParserTest, EI) {
  DiEIHeaderParser parser(1);
  check(parser, {{"record",
                  "AU One\nAU Two\nTI Long\n title\nAB Text\n",
                  32,
                  {{"author", "One, Two"}, {"title", "Long title"}, {"keys", "(null)"}},
                  kSized},
                 {"no abstract", "TI a\nMH b\nAB c\n", -1, {}, kSized},
                 {"no end told", "AB Text\n", -1}});
}

TEST_F(HeaderParserTest, Times) {
  DiTimesHeaderParser parser(1);
  const std::string page = "..HD:\nOne\nTwo\n..DT:\n..X\n..LD:\nLead\n";
  const std::string fields = "..HD:\nOne\n.a\nTwo\n.b\n.c\n..LD:\nLead\n";
  check(parser,
        {{"document", page, 30, {{"title", "One/Two"}, {"author", "(null)"}}},
         {"a field between head lines", fields, 29, {{"title", "One/Two"}}},
         {"no head lines", "..HD:\n..LD:\nLead\n", 12, {{"title", ""}}},
         {"head lines without an end", "..HD:\nOne\n..LD:\nLead\n", 16, {{"title", "(null)"}}},
         {"no lead paragraph", "..HD:\nOne\n..LD:\n..TE:\n", -1}});
}

TEST_F(HeaderParserTest, EMSAndIDG) {
  const std::string feeds = "one\n \n \n \n \n \n \n <B>Head</B>\n";
  const std::string returns = "1\r2\r3\r4\r5\rHead\rBy Me\r\r\rBody";
  const std::string cut = "one\n\n\n\n\n\n\n " + std::string(200, 'h') + "\nBody";
  DiEMSHeaderParser ems(1);
  check(ems, {{"notice", "<A>Sale\nBy Me\nBody", 8, {{"title", "Sale"}}},
              {"line feeds",
               feeds + " By Me\n Second\nBody",
               44,
               {{"title", "Head/Second"}, {"author", "Me"}, {"date", "(null)"}}},
              {"returns", returns, 23, {{"title", "Head"}, {"author", "Me"}}},
              {"notice behind a return", "\rA\nBody", 3, {{"title", "A"}}},
              {"empty", "", 0, {{"title", "(null)"}}}});
  DiIDGHeaderParser idg(1);
  check(idg, {{"notice", "<A>Sale\nBody", 8, {{"title", "Advertisement"}}},
              {"line feeds", feeds + "\n Second\nBody", 38, {{"title", "Head/ Second"}}},
              {"cut", cut, 212, {{"title", std::string(127, 'h')}}},
              {"too few lines", "one\n two\nBody", 9, {{"title", "(null)"}}},
              {"end of file in the header", "one\n two", -1}});
}

TEST_F(HeaderParserTest, RunTime) {
  const std::string root = path("root");
  DiRunTimeHeaderParser parser(root.c_str());
  const std::string page = "xx\nName= The title\nrest";
  check(parser, {{"no definition", page, 0, {{"title", "(null)"}}}});
  write("root.cus", "----\nName=\n");
  check(parser, {{"title", page, 0, {{"title", " The title"}, {"url", "(null)"}}},
                 {"no newline behind it", "Name=x", 0, {{"title", "x"}}},
                 {"no marker", "Name:", 0, {{"title", "(null)"}}}});
  EXPECT_EQ(parser.headerPolicy(), 0);
}

TEST_F(HeaderParserTest, WebCrawlerWritesItsTables) {
  const std::string root = path("root");
  const std::string first = "http\thost\t80\t/a\n<title>One\nmore <b></title></head>x\n";
  {
    DiWebCrawlerHeaderParser parser(root.c_str(), 1);
    check(
        parser,
        {{"article", first, 50, {{"url", "http://host:80/a"}, {"title", "One\nmore <b>"}}, kSized},
         {"too few tabs", "http\thost\t/b\n<title>Two</title>\n", -1, {{"url", "(null)"}}, kSized},
         {"no title", "ftp\th\t21\t/c\ntext\n", 0, {{"url", "ftp://h:21/c"}}, kSized}});
  }
  DiWebCrawlerHeaderParser reader(root.c_str(), 1);
  EXPECT_EQ(reader.numDocs(), 2);
  const auto lookUp = [&](const char* suffix, const std::string& key) {
    const std::unique_ptr<FdBag> table(FdDBMManager::Bind((root + suffix).c_str()));
    char data[64] = {};
    int size = sizeof data;
    if (!table->find(key.data(), static_cast<int>(key.size()), data, &size))
      return std::string("-");
    return std::string(data, static_cast<std::size_t>(size));
  };
  using namespace std::string_literals;
  EXPECT_EQ(lookUp(".url", "\0\0\0\1"s), "ftp://h:21/c\0"s);
  EXPECT_EQ(lookUp(".lru", "http://host:80/a\0"s), "\0\0\0\0"s);
  EXPECT_EQ(lookUp(".tit", "\0\0\0\0"s), "Onemore \0"s);
}

}  // namespace
}  // namespace vandrelle
