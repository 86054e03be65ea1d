#include <vector>

#include "Document/DocumentFixture.h"
#include "DocumentImpl/DiClariSeparator.h"
#include "DocumentImpl/DiDelimSeparator.h"
#include "DocumentImpl/DiMediorSeparator.h"
#include "DocumentImpl/DiTimesSeparator.h"
#include "Token.h"
#include "Token/TkLexer.h"

namespace vandrelle {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// Between the articles of a list: a delimiter that made none.
const std::string kNone = "(none)";

class SeparatorTest : public DocumentFixture {
 protected:
  // All that is asked of a file from its start to its end.
  Texts cut(DiSeparator& separator, const std::string& text) {
    DcSourceStream file(write("feed", text).c_str());
    Texts articles;
    while (file.peek() != EOF) {
      const long start = file.tellg();
      long docEnd = -1;
      const long next = separator.gotoNextArticle(&file, &docEnd);
      file.clear();
      const long stands = file.tellg();
      if (next == -1) {
        articles.push_back(kNone);
        EXPECT_GT(stands, start);
        if (stands <= start) break;
        continue;
      }
      EXPECT_EQ(stands, start) << "the stream was moved";
      EXPECT_GT(next, start);
      if (docEnd < start || next <= start) break;
      articles.push_back(
          text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(docEnd - start)));
      file.seekg(next);
    }
    return articles;
  }

  struct Case {
    const char* what;
    std::string text;
    Texts articles;
  };
  void check(DiSeparator&& separator, const std::vector<Case>& cases) {
    for (const Case& test : cases) {
      SCOPED_TRACE(test.what);
      EXPECT_EQ(cut(separator, test.text), test.articles);
    }
  }
};

TEST_F(SeparatorTest, Delimiters) {
  const std::string longLine(255, 'x');
  const std::string dashes(70, '-');
  const std::string fewer = "a\n" + dashes.substr(1) + "\n";
  check(DiDelimSeparator("<DOC>"),
        {{"no delimiter", "one\ntwo", {"one\ntwo"}},
         {"one first and none after", "<DOC>\none\n", {kNone, "one\n"}},
         {"two in a row", "a\n<DOC>\n<DOC>\nb", {"a\n", kNone, "b"}},
         {"behind blank lines", "\n \n<DOC>\na\n\n<DOC>\n", {kNone, "a\n\n"}},
         {"blank lines belong to the article", "\n\na\n<DOC>\nb", {"\n\na\n", "b"}},
         {"only delimiters", "<DOC>\n<DOC>\n<DOC>", {kNone, kNone, kNone}},
         {"only blanks", " \n\n", {" \n\n"}},
         {"more text behind it", "a\n<DOC>1\nb", {"a\n", "b"}},
         {"not in mid-line", "a <DOC>\nb", {"a <DOC>\nb"}},
         {"at the second piece of a line", longLine + "<DOC>b\nc", {longLine, "c"}},
         {"rest of a long delimiter line", "<DOC>" + longLine + "\nb", {kNone, "xxxxx\nb"}},
         {"zero bytes", "a\0b\n<DOC>\n\0"s, {"a\0b\n"s, "\0"s}}});
  check(DiDelimSeparator('=', 3), {{"characters", "a\n====\nb", {"a\n", "b"}}});
  check(DiNntpSeparator(), {{"Usenet", fewer + dashes + "--\nb\n", {fewer, "b\n"}}});
  write("root.cus", "%%\nName=\n");
  write("empty.cus", "\nName=\n");
  check(DiRunTimeSeparator(path("root").c_str()), {{"run time", "a\n%%\nb", {"a\n", "b"}}});
  for (const char* root : {"absent", "empty"}) {
    check(DiRunTimeSeparator(path(root).c_str()), {{root, "a\n\n%%\nb", {"a\n\n%%\nb"}}});
  }
}

TEST_F(SeparatorTest, Records) {
  const std::string begin = "::BRXXXXXX\n";
  check(DiMedLineSeparator(),
        {{"records", "A\n::EI\nbetween\n" + begin + "B\n::EI\n", {"A\n", "B\n"}},
         {"the whole line", "A\n::EI\n::BRXXXXXX \n::BRXXXXX\n" + begin + "B", {"A\n", "B"}},
         {"last record without an end", "A\n::EI\n" + begin + "B\n", {"A\n", "B\n"}},
         {"empty record", "::EI\n" + begin + "B\n::EI", {"", "B\n"}}});
  const std::string first = "TI a\nAB b\n  c\n d\n", second = "TI g\nAB h\n";
  const std::string joined = "TI a\n*\nTI b\n";
  check(DiEISeparator(),
        {{"records", first + "MH e\n* f\n" + second + "*\nAB i", {first, second, "AB i"}},
         {"no abstract takes the next record", joined + "AB c\n*\n", {joined + "AB c\n"}},
         {"no abstract at all", joined, {joined}},
         {"abstract to the end of the file", "AB a\n b", {"AB a\n b"}}});
}

TEST_F(SeparatorTest, ClariNet) {
  const std::string notice = "This, and all articles of today\n";
  const std::string bare = "--\nA\n" + notice;
  check(
      DiClariSeparator(),
      {{"batch", "#! rnews 5\nA\n#! rnews 9\nB\n", {kNone, "A\n", "B\n"}},
       {"blank lines make an article", "\n#! rnews 5\nA", {"\n", "A"}},
       {"trailer", "A\n--\n" + notice + "B\n#! rnews\nC\n--x\n" + notice, {"A\n--\n", "C\n--x\n"}},
       {"notice without dashes", bare, {bare}},
       {"only the first notice counts", "--\n" + notice + "--\n" + notice, {"--\n"}}});
  const char* located = "HARBOUR (UP) - text\nA\n#! rnews\nNone (here)\nB\n#! rnews\n-(\n";
  check(DiClariSeparator(1), {{"location", located, {"HARBOUR ", "", ""}}});
}

TEST_F(SeparatorTest, Times) {
  const std::string boundary = "*** BRS DOCUMENT BOUNDARY ***\n";
  const std::string one = "..LD:\na\n..TE: b\n", disarmed = "..TE: a\nb\n.c\n..TE:\n";
  const std::string endless = "a\n" + boundary + "b\n";
  check(DiTimesSeparator(), {{"documents",
                              boundary + one + "..F7:\nc\n" + boundary + "..TE:\n.\n",
                              {kNone, one, "..TE:\n"}},
                             {"disarmed by text", disarmed + ".d\n" + boundary, {disarmed}},
                             {"two text fields", "..TE: a\n..TE: b\nc\n", {"..TE: a\n"}},
                             {"no end of text", endless, {endless}},
                             {"and no last newline", "a\nb\nc", {"a\nb\n"}}});
}

// Words of 5 letters; `paragraphs` by the number of their words.
std::string rtf(const std::vector<int>& paragraphs) {
  std::string text = "{\\rtf1{\\f0 ";
  for (const int words : paragraphs) {
    for (int i = 0; i < words; ++i) text += "abcde ";
    text += "\\par\n";
  }
  return text + "}}";
}

TEST_F(SeparatorTest, MediorCutsAtParagraphs) {
  const std::unique_ptr<TkLexer> lexer(TkManager::RTFLexer());
  // 200 and 150 letters, which 100 a piece turn into 2 of 102 and (the rest is not
  // more than half) 1 of 151; then nothing, and a negative number, as damage has it.
  write("root.sep", std::string("\0\0\0\310\0\0\0\226\0\0\0\0\377\377\377\377\0", 17));
  DiMediorSeparator separator(lexer.get(), path("root").c_str(), 100);
  const std::string text = rtf({8, 8, 8, 8, 8});
  const std::size_t third = text.find("\\par", text.find("\\par", text.find("\\par") + 1) + 1);
  EXPECT_EQ(cut(separator, text), (Texts{text.substr(0, third), text.substr(third + 4)}));
  EXPECT_EQ(cut(separator, rtf({10, 10, 10})), (Texts{rtf({10, 10, 10})}));
  EXPECT_EQ(cut(separator, rtf({2, 2, 1})).size(), 3u) << "one letter a piece";
  EXPECT_EQ(cut(separator, rtf({2, 2, 1})).size(), 3u);
  EXPECT_EQ(cut(separator, text), (Texts{text})) << "beyond the table";
  DiMediorSeparator tableless(lexer.get(), path("absent").c_str());
  EXPECT_EQ(cut(tableless, text), (Texts{text}));
}

}  // namespace
}  // namespace vandrelle
