#include "Driver/VymFieldFinder.h"

#include <random>

#include "Document/DcSentenceManager.h"
#include "Document/DcSimpleDocument.h"
#include "Document/DocumentFixture.h"
#include "Summary/PiHtmlSummarizeOperator.h"
#include "TestLog.h"

namespace vandrelle {
namespace {

std::string summary(TextPage page, int mode = 1, int sentences = 2) {
  VymFieldFinder finder(mode, sentences);
  return taken(finder.getField(&page, "root", "summary"));
}

TEST(VymFieldFinder, Descriptions) {
  const struct {
    const char* page;
    const char* summary;
    const char* quality = nullptr;  // in mode 2, where it differs
  } cases[] = {
      {"<META NAME=\"description\" CONTENT=\"Boats and ships\">x", " Boats and ships"},
      {"<meta name=description content=boats>", "boat"},
      {"<meta\n name = \"Description\"\r\n Content = \"Old\nboats\" >", "  Old boats "},
      {"<meta name=\"description\" content=\"a \"b\" c\"/>", " a  b  c "},
      {"<meta name=\"description\" content=\"never closed", " never close"},
      {"<meta name=\"description\" content=\"less < more\">", " less"},
      {"<meta name=\"description\" content=>", ""},
      {"<meta name=\"description\" content=x>", ""},
      // The search is not anchored: the first tag's content counts.
      {"<meta http-equiv=\"Content-Type\" content=\"text/html\"><meta name=\"description\" "
       "content=\"Boats\">",
       " text/html"},
      {"<MAP><p><meta name=\"description\" content=\"Boats\">", " Boats"},
      {"meta name=description content=boats. No tag at all.",
       "meta name=description content=boats.   No tag at ...  ",
       "meta name=description content=boats. No tag at all."},
      {"<META name=\"keywords\" content=\"boats\">Some text", "Some ...  ", "Some text"},
      {"<meta name=\"description\" contents=\"boats\">Some text", "Some ...  ", "Some text"},
      {"<meta name=\"description\"content=\"boats\">Some text", "Some ...  ", "Some text"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(summary(TextPage(c.page), 1), c.summary) << c.page;
    EXPECT_EQ(summary(TextPage(c.page), 2), c.quality != nullptr ? c.quality : c.summary) << c.page;
  }
  EXPECT_EQ(summary(TextPage(cases[0].page), 0), "(No Summary)");
}

TEST(VymFieldFinder, FirstSentences) {
  const std::string text = "One is here. Two is there. Three\tis gone. Four";
  EXPECT_EQ(summary(TextPage(text), 1, 1), "One is here.  ");
  EXPECT_EQ(summary(TextPage(text), 1, 3), "One is here.   Two is there.   Three is gone.  ");
  // All of it: the last sentence loses a word, here its only one.
  EXPECT_EQ(summary(TextPage(text), 1, 4), "One is here.   Two is there.   Three is gone.   ...  ");
  EXPECT_EQ(summary(TextPage("One is here. Two is there."), 1, 9), "One is here.   Two is ...  ");
  EXPECT_EQ(summary(TextPage("One is here. xy"), 1, 9), "One is here.  ...  ");
  EXPECT_EQ(summary(TextPage("<head>\n<title>T</title></head>Body text here", 30), 1, 9),
            "Body text ...  ");
  for (const int sentences : {0, -1})
    EXPECT_EQ(summary(TextPage(text), 1, sentences), "(No Summary)");
}

// A summary is taken from the first pieces of a page where that is enough.
TEST(VymFieldFinder, LargePagesGiveWhatTheWholeTextGives) {
  std::mt19937 random(7);
  const char* const parts[] = {"word ",   "ends. ", "<b>", "</li>", "< ",   "> ",  "3.1",
                               "\"so.\"", "a. ",    ".",   "x",     "<h1 ", "i>\n"};
  for (int round = 0; round < 300; ++round) {
    std::string body = "Plain. ";
    // Few kinds of parts at a time: pages without a `>`, without a mark, ...
    const std::size_t kinds = 1 + random() % std::size(parts);
    const std::size_t first = random() % std::size(parts);
    while (body.size() < 20000) body += parts[(first + random() % kinds) % std::size(parts)];
    const HeapAptr<char> text = PiHtmlSummarizeOperator::Html2Ascii(body.c_str(), -1);
    DcSentenceManager sentences(text.get(), nullptr, nullptr, 1, 0, 0);
    const int count = sentences.numDocuments();
    for (const int quota : {1, 3, 40, 700}) {
      if (quota >= count) continue;
      std::string expected;
      for (int i = 0; i < quota; ++i) {
        const std::unique_ptr<DcDocument> doc(sentences.documentNum(i));
        const auto* sentence = static_cast<DcSimpleDocument*>(doc.get());
        expected.append(sentence->buffer(), static_cast<std::size_t>(sentence->numCharacters()));
        expected += "  ";
      }
      ASSERT_EQ(summary(TextPage(body), 1, quota), expected) << body;
    }
  }
}

TEST(VymFieldFinder, NothingToShow) {
  EXPECT_EQ(summary(TextPage("")), "(No Summary)");
  EXPECT_EQ(summary(TextPage("four")), "(No Summary)");
  EXPECT_EQ(summary(TextPage("<b></b><hr>")), "(No Summary)");
  EXPECT_EQ(summary(TextPage("All of it is header.", 20)), "(No Summary)");
  EXPECT_EQ(summary(TextPage("All of it is header.", 2000)), "(No Summary)");
  EXPECT_EQ(summary(TextPage("A header never measured.", -1)), "A header never ...  ");
  EXPECT_EQ(summary(TextPage(std::string("ab\0<meta name=description content=boats>", 40))),
            "(No Summary)");
  TextPage gone("One is here. Two is there.");
  gone.source_ = false;
  VymFieldFinder finder(1, 2);
  EXPECT_EQ(taken(finder.getSummary(&gone)), "(No Summary)");
  DcSimpleDocument plain(3, "name", "One is here.", 12, nullptr, nullptr, nullptr);
  EXPECT_EQ(taken(finder.getSummary(&plain)), "(No Summary)");
  EXPECT_EQ(taken(finder.getTitle(&plain)), "(Untitled)");
  EXPECT_EQ(taken(finder.getField(&gone, "root", "title")), "(Untitled)");
  EXPECT_EQ(taken(finder.getField(&gone, "root", "author")), "A. Writer");
  EXPECT_EQ(taken(finder.getField(nullptr, "root", "author")), "(null)");
  EXPECT_EQ(taken(finder.getURL(&plain)), "name");
}

TEST(VymFieldFinder, ReadsNoMoreThanTheLimit) {
  TextPage page(std::string(0x13FFF, 'x') + ". <meta name=description content=\"late\"> More.");
  VymFieldFinder finder(1, 1);
  EXPECT_EQ(taken(finder.getSummary(&page)), "...  ");
  EXPECT_EQ(page.largestRead_, 0x13FFF);
}

TEST(VymSpiderFieldFinder, Addresses) {
  const struct {
    std::string page;
    const char* url;
  } cases[] = {
      {"http\twww.x.org\t80\t/a b.html\n<html>", "http://www.x.org:80/a b.html"},
      {"http\twww.x.org\t80\t/a\tb\n", "http://www.x.org:80/a\tb"},
      {"\t\t\t\n", "://:"},
      {"http\twww.x.org\t80\n/a\n", "(null)"},
      {"http\twww.x.org\t80\t/a.html", "(null)"},
      {"", "(null)"},
      {"\n", "(null)"},
      {"http\tx\t80\t/" + std::string(4096, 'p') + "\n", "(null)"},
  };
  VymSpiderFieldFinder finder(0, 0);
  for (const auto& c : cases) {
    TextPage page(c.page);
    EXPECT_EQ(taken(finder.getField(&page, "root", "url")), c.url) << c.page;
  }
  DcSimpleDocument plain(3, "name", "a\tb\tc\td\n", 8, nullptr, nullptr, nullptr);
  EXPECT_EQ(finder.getURL(&plain), nullptr);
}

class Mapfile : public DirectoryTest {
 protected:
  const std::string path_ = directory_ / "map";
};

TEST_F(Mapfile, TheFirstFitWins) {
  writeFile(path_, "http://x.org/ /site/\n\thttp://y.org/docs/\n/site/docs/ http://z.org /other");
  VymFileToURLMapper mapper(path_.c_str());
  EXPECT_EQ(taken(mapper.mapFilename("/site/docs/a.html")), "http://x.org/docs/a.html");
  EXPECT_EQ(taken(mapper.mapFilename("/other")), "http://z.org");
  EXPECT_EQ(taken(mapper.mapFilename("/othe")), "/othe");
  EXPECT_EQ(taken(mapper.mapFilename("")), "");
  TextPage page("x");
  const std::unique_ptr<DcFieldFinder> finder(FIELD_FINDER(0, 0, "/tmp/", &mapper, nullptr));
  EXPECT_EQ(taken(finder->getField(&page, "root", "url")), "http://x.org/docs/a.html");
}

TEST_F(Mapfile, BadInput) {
  writeFile(path_, "http://x.org/ /site/ http://lonely.org/");
  const TestLog log;
  VymFileToURLMapper mapper(path_.c_str());
  EXPECT_EQ(taken(mapper.mapFilename("/site/a")), "http://x.org/a");
  EXPECT_EQ(taken(mapper.mapFilename("/b")), "/b");
  EXPECT_NE(log.lines().at(0).find("http://lonely.org/"), std::string::npos);

  writeFile(path_, std::string(3000, 'a'));  // tokens of 1023 characters: two and a rest
  VymFileToURLMapper longTokens(path_.c_str());
  EXPECT_EQ(taken(longTokens.mapFilename(std::string(1023, 'a').c_str())), std::string(1023, 'a'));
}

}  // namespace
}  // namespace vandrelle
