#include <functional>
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
  long docEnd;
  int headSize;
  Headers headers;
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
  const std::string filler(300, 'x');
  const std::string longTitle(300, 't');
  check(
      parser,
      {
          {"no title", "<html><body>text", kWhole, 0, {{"title", "(null)"}}},
          {"title alone",
           "<TITLE> \n A page</TITLE>rest\n",
           kWhole,
           24,
           {{"Title", "A page"}, {"author", "(null)"}}},
          {"head before title", "<title>a</title></HEAD>more", kWhole, 23, {{"title", "a"}}},
          {"body first", "<title>a</title></head>\n<body>more", kWhole, 30, {{"title", "a"}}},
          {"body with attributes is no mark", "<title>a</title></head><body x=1>", kWhole, 23, {}},
          {"two lines behind the title",
           "<title>a</title>\n1\n</head>\n<body>",
           kWhole,
           26,
           {{"title", "a"}}},
          {"not the third", "<title>a</title>\n1\n2\n<body>", kWhole, 16, {{"title", "a"}}},
          {"no end in reach", "<title>a\nb\nc\nd</title>", kWhole, 13, {{"title", "a\nb\nc\n"}}},
          {"ends by body", "<title>a<b>c<BODY>", kWhole, 18, {{"title", "a<b>c"}}},
          {"tag across pieces is not seen",
           std::string(252, ' ') + "<title>a</title>",
           kWhole,
           0,
           {}},
          {"long title", "<title>" + longTitle, kWhole, 307, {{"title", longTitle.substr(0, 255)}}},
          {"empty title", "<title></title>", kWhole, 15, {{"title", ""}}},
          {"just small enough",
           std::string(32760 - 16, '\n') + "<title>a</title>\n1\n2\n",
           kWhole,
           32760,
           {{"title", "a"}}},
          {"too large: all is header",
           std::string(32768 - 16, '\n') + "<title>a</title>\n1\n2\n",
           kWhole,
           -1,
           {{"title", "a"}}},
      });
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
        {
            {"article",
             article,
             kSized,
             37,
             {{"title", "The news"}, {"subject:", "The news"}, {"from", "me"}, {"date", "(null)"}}},
            {"headers to the end of the file", "From: me\nSubject: x\n", kWhole, -1, {}},
            {"headers to the end of the article", "From: me\nSubject: x\n", kSized, 0, {}},
            {"value of nothing", "Subject:\n\n", kWhole, 10, {{"subject", ""}}},
        });
  DiNntpHeaderParser lexerless(nullptr, 1);
  check(lexerless, {{"without a lexer", article, kWhole, 0, {{"title", "(null)"}}}});
}

TEST_F(HeaderParserTest, Clari) {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  DiClariHeaderParser parser(lexer.get(), 1);
  check(parser, {
                    {"text", "Subject: x\n\n  \nSome text", kWhole, 12, {{"title", "x"}}},
                    {"picture", "Subject: x\n\n\n A GIF file\n", kWhole, -1, {}},
                    {"nothing", "Subject: x\n\n#! rnews 10\n", kWhole, -1, {}},
                    {"picture in the second line", "Subject: x\n\nText\nGIF\n", kWhole, 12, {}},
                });
}

TEST_F(HeaderParserTest, MedLine) {
  DiMedLineHeaderParser parser(1);
  const std::string record =
      "UI: 9\nAU: First A\nau: Second B\nTI: A long\n  title\nMH: k\nAB: Text\n::EI\n";
  check(parser, {
                    {"record",
                     record,
                     kSized,
                     60,
                     {{"author", "First A, Second B"},
                      {"title", "A long title"},
                      {"keys", "k"},
                      {"universal id", "9"},
                      {"language", "(null)"},
                      {"abstract", "(null)"}}},
                    {"no end told", record, kWhole, -1, {}},
                    {"no abstract", "TI: a\n::EI\nAB: x\n", kSized, -1, {}},
                    {"abstract behind the end", "TI: a\nAB: x\n", 6, -1, {}},
                    {"no mark at all", "TI: a\n", kSized, -1, {}},
                });
}

TEST_F(HeaderParserTest, EI) {
  DiEIHeaderParser parser(1);
  check(parser, {
                    {"record",
                     "AU One\nAU Two\nTI Long\n title\nAB Text\n",
                     kSized,
                     32,
                     {{"author", "One, Two"}, {"title", "Long title"}, {"keys", "(null)"}}},
                    {"no abstract", "TI a\nMH b\nAB c\n", kSized, -1, {}},
                    {"no end told", "AB Text\n", kWhole, -1, {}},
                });
}

TEST_F(HeaderParserTest, Times) {
  DiTimesHeaderParser parser(1);
  check(parser, {
                    {"document",
                     "..HD:\nOne\nTwo\n..DT:\n..X\n..LD:\nLead\n",
                     kWhole,
                     30,
                     {{"title", "One/Two"}, {"author", "(null)"}}},
                    {"a field between head lines",
                     "..HD:\nOne\n.a\nTwo\n.b\n.c\n..LD:\nLead\n",
                     kWhole,
                     29,
                     {{"title", "One/Two"}}},
                    {"no head lines", "..HD:\n..LD:\nLead\n", kWhole, 12, {{"title", ""}}},
                    {"head lines without an end",
                     "..HD:\nOne\n..LD:\nLead\n",
                     kWhole,
                     16,
                     {{"title", "(null)"}}},
                    {"no lead paragraph", "..HD:\nOne\n..LD:\n..TE:\n", kWhole, -1, {}},
                });
}

TEST_F(HeaderParserTest, EMSAndIDG) {
  DiEMSHeaderParser ems(1);
  check(ems, {
                 {"notice", "<A>Sale\nBy Me\nBody", kWhole, 8, {{"title", "Sale"}}},
                 {"line feeds",
                  "one\n \n \n \n \n \n \n <B>Head</B>\n By Me\n Second\nBody",
                  kWhole,
                  44,
                  {{"title", "Head/Second"}, {"author", "Me"}, {"date", "(null)"}}},
                 {"returns",
                  "1\r2\r3\r4\r5\rHead\rBy Me\r\r\rBody",
                  kWhole,
                  23,
                  {{"title", "Head"}, {"author", "Me"}}},
                 {"notice behind a return", "\rA\nBody", kWhole, 3, {{"title", "A"}}},
                 {"empty", "", kWhole, 0, {{"title", "(null)"}}},
             });
  DiIDGHeaderParser idg(1);
  check(idg, {
                 {"notice", "<A>Sale\nBody", kWhole, 8, {{"title", "Advertisement"}}},
                 {"line feeds",
                  "one\n \n \n \n \n \n \n <B>Head</B>\n\n Second\nBody",
                  kWhole,
                  38,
                  {{"title", "Head/ Second"}}},
                 {"cut",
                  "one\n\n\n\n\n\n\n " + std::string(200, 'h') + "\nBody",
                  kWhole,
                  212,
                  {{"title", std::string(127, 'h')}}},
                 {"too few lines", "one\n two\nBody", kWhole, 9, {{"title", "(null)"}}},
                 {"end of file in the header", "one\n two", kWhole, -1, {}},
             });
}

// The time for a value is linear in the header.
TEST_F(HeaderParserTest, EMSHeaderOfManyLines) {
  std::string text = "one\n";
  for (int i = 0; i < 400000; ++i) text += " x\n";
  DiEMSHeaderParser ems(1);
  ParsedDocument parsed(ems, write("page", text));
  EXPECT_EQ(parsed.header("author"), "(null)");
}

TEST_F(HeaderParserTest, RunTime) {
  const std::string root = path("root");
  DiRunTimeHeaderParser parser(root.c_str());
  const std::string page = "xx\nName= The title\nrest";
  check(parser, {{"no definition", page, kWhole, 0, {{"title", "(null)"}}}});
  write("root.cus", "----\nName=\n");
  check(parser, {
                    {"title", page, kWhole, 0, {{"title", " The title"}, {"url", "(null)"}}},
                    {"no newline behind it", "Name=x", kWhole, 0, {{"title", "x"}}},
                    {"no marker", "Name:", kWhole, 0, {{"title", "(null)"}}},
                });
  EXPECT_EQ(parser.headerPolicy(), 0);
}

TEST_F(HeaderParserTest, WebCrawlerWritesItsTables) {
  const std::string root = path("root");
  const std::string first = "http\thost\t80\t/a\n<title>One\nmore <b></title></head>x\n";
  {
    DiWebCrawlerHeaderParser parser(root.c_str(), 1);
    check(parser, {
                      {"article",
                       first,
                       kSized,
                       50,
                       {{"url", "http://host:80/a"}, {"title", "One\nmore <b>"}}},
                      {"too few tabs",
                       "http\thost\t/b\n<title>Two</title>\n",
                       kSized,
                       -1,
                       {{"url", "(null)"}}},
                      {"no title", "ftp\th\t21\t/c\ntext\n", kSized, 0, {{"url", "ftp://h:21/c"}}},
                  });
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
