#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

#include "Summary/PiHtmlSummarizeOperator.h"
#include "Summary/PiSummaryClean.h"
#include "Token.h"

namespace vandrelle {
namespace {

std::string ascii(const std::string& page) {
  return PiHtmlSummarizeOperator::Html2Ascii(page.c_str(), -1).get();
}

TEST(Html2Ascii, Rules) {
  const struct {
    const char* page;
    const char* text;
  } cases[] = {
      {"", ""},
      {" \t\n ", ""},
      {"  a \r\n\t b  ", "a b"},
      {"<b>a</b>b <i>c</i>", "ab c"},
      {"foo</li> <li>bar", "foo. bar"},
      {"foo </li>bar", "foo. bar"},
      {"foo.</li><li>bar", "foo.bar"},
      {"foo. <li>bar", "foo. bar"},
      {"<h1>a</h1>b", "a. b"},
      {"<title>T</TITLE>x<BR>y<H6>z", "T. x. y. z"},
      {"a<ul>b</dl>c<dt>d</DD>e", "a. b. c. d. e"},
      {"a<h7>b<h0>c</br>d<br/>e<li class=x>f< li>g<lis>h", "abcdefgh"},
      {"a<p>b", "ab"},
      {"foo</li> ", "foo."},
      {"a < b", "a < b"},
      {"a<b<c", "a<b<c"},
      {"a<b>c<d", "ac<d"},
      {"a > b", "a > b"},
      {"caf\xE9 \xE9t&eacute;", "caf\xE9 \xE9t&eacute;"},
      {"<", "<"},
      {"<>x", "x"},
  };
  for (const auto& c : cases) EXPECT_EQ(ascii(c.page), c.text) << c.page;
}

TEST(Html2Ascii, TakesNoMoreThanTheLength) {
  EXPECT_STREQ(PiHtmlSummarizeOperator::Html2Ascii("abc<b>d", 5).get(), "abc<b");
  EXPECT_STREQ(PiHtmlSummarizeOperator::Html2Ascii("abc", 0).get(), "");
}

TEST(Html2Ascii, IsLinearWithoutAClosingBracket) {
  const std::string page(8 << 20, '<');
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(ascii(page), page);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

std::string times(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

TEST(PiSummaryClean, Judges) {
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  PiSummaryClean judge(stemmer.get(), lexer.get());
  const struct {
    std::string sentence;
    bool good;
  } cases[] = {
      {"", false},
      {"only two", false},
      {"three words here", true},
      {"here three words", true},  // begins with the last word of the one before
      {"here here here and there more", true},
      {"here here here here and there more", false},
      {times("dog ", 10), false},
      {"a1 b1 a1 b1", true},      // 4 by 2: twice on an average
      {"a1 b1 a1 b1 a1", false},  // 5 by 2
      {"x1 y1 x1 y2 x1 y3 x1 y4 x1 y5 x1 y6", true},
      {"x1 y1 x1 y2 x1 y3 x1 y4 x1 y5 x1 y6 x1", false},  // the seventh use
  };
  for (const auto& c : cases) {
    EXPECT_EQ(judge.cleanSentence(c.sentence.c_str()), c.good) << c.sentence;
  }
}

TEST(PiSummaryClean, KeepsTheGoodSentences) {
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  PiSummaryClean judge(stemmer.get(), lexer.get());
  for (int run = 0; run < 2; ++run) {
    const HeapAptr<char> text(
        judge.clean("This one is good. Home home home home home. Too short. So is this one."));
    EXPECT_STREQ(text.get(), "This one is good. So is this one.");
  }
}

}  // namespace
}  // namespace vandrelle
