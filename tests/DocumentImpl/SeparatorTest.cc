#include <functional>
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

using Texts = std::vector<std::string>;
using Maker = std::function<std::unique_ptr<DiSeparator>()>;

// Between the articles of a list: a delimiter that made none.
const std::string kNone = "(none)";
const std::string kDashes(70, '-');
const std::string kBoundary = "*** BRS DOCUMENT BOUNDARY ***\n";

template <typename Separator, typename... Arguments>
Maker make(Arguments... arguments) {
  return [arguments...] { return std::make_unique<Separator>(arguments...); };
}

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
    Maker make;
    std::string text;
    Texts articles;
  };
  void check(const std::vector<Case>& cases) {
    for (const Case& test : cases) {
      SCOPED_TRACE(test.what);
      EXPECT_EQ(cut(*test.make(), test.text), test.articles);
    }
  }
};

TEST_F(SeparatorTest, Delimiters) {
  const Maker doc = make<DiDelimSeparator>("<DOC>");
  const std::string longLine(255, 'x');
  write("root.cus", "%%\nName=\n");
  write("empty.cus", "\nName=\n");
  const auto runTime = [&](const char* root) -> Maker {
    return [root = path(root)] { return std::make_unique<DiRunTimeSeparator>(root.c_str()); };
  };
  check({
      {"no delimiter", doc, "one\ntwo", {"one\ntwo"}},
      {"one first and none after", doc, "<DOC>\none\n", {kNone, "one\n"}},
      {"two in a row", doc, "a\n<DOC>\n<DOC>\nb", {"a\n", kNone, "b"}},
      {"behind blank lines", doc, "\n \n<DOC>\na\n\n<DOC>\n", {kNone, "a\n\n"}},
      {"blank lines belong to the article", doc, "\n\na\n<DOC>\nb", {"\n\na\n", "b"}},
      {"only delimiters", doc, "<DOC>\n<DOC>\n<DOC>", {kNone, kNone, kNone}},
      {"only blanks", doc, " \n\n", {" \n\n"}},
      {"more text behind it", doc, "a\n<DOC>1\nb", {"a\n", "b"}},
      {"not in mid-line", doc, "a <DOC>\nb", {"a <DOC>\nb"}},
      {"at the second piece of a line", doc, longLine + "<DOC>b\nc", {longLine, "c"}},
      {"rest of a long delimiter line", doc, "<DOC>" + longLine + "\nb", {kNone, "xxxxx\nb"}},
      {"zero bytes",
       doc,
       std::string("a\0b\n<DOC>\n\0", 11),
       {std::string("a\0b\n", 4), std::string("\0", 1)}},
      {"characters", make<DiDelimSeparator>('=', 3), "a\n====\nb", {"a\n", "b"}},
      {"Usenet",
       make<DiNntpSeparator>(),
       "a\n" + kDashes.substr(1) + "\n" + kDashes + "--\nb\n",
       {"a\n" + kDashes.substr(1) + "\n", "b\n"}},
      {"run time", runTime("root"), "a\n%%\nb", {"a\n", "b"}},
      {"no definition", runTime("absent"), "a\n\n%%\nb", {"a\n\n%%\nb"}},
      {"empty definition", runTime("empty"), "a\n\n%%\nb", {"a\n\n%%\nb"}},
  });
}

TEST_F(SeparatorTest, Records) {
  const Maker medline = make<DiMedLineSeparator>();
  const Maker ei = make<DiEISeparator>();
  check({
      {"MEDLINE", medline, "A\n::EI\nbetween\n::BRXXXXXX\nB\n::EI\n", {"A\n", "B\n"}},
      {"mark must be the whole line",
       medline,
       "A\n::EI\n::BRXXXXXX \n::BRXXXXX\n::BRXXXXXX\nB",
       {"A\n", "B"}},
      {"last record without an end", medline, "A\n::EI\n::BRXXXXXX\nB\n", {"A\n", "B\n"}},
      {"empty record", medline, "::EI\n::BRXXXXXX\nB\n::EI", {"", "B\n"}},
      {"EI",
       ei,
       "TI a\nAB b\n  c\n d\nMH e\n* f\nTI g\nAB h\n*\nAB i",
       {"TI a\nAB b\n  c\n d\n", "TI g\nAB h\n", "AB i"}},
      {"no abstract takes the next record",
       ei,
       "TI a\n*\nTI b\nAB c\n*\n",
       {"TI a\n*\nTI b\nAB c\n"}},
      {"no abstract at all", ei, "TI a\n*\nTI b\n", {"TI a\n*\nTI b\n"}},
      {"abstract to the end of the file", ei, "AB a\n b", {"AB a\n b"}},
  });
}

TEST_F(SeparatorTest, ClariNet) {
  const Maker clari = make<DiClariSeparator>();
  const Maker location = make<DiClariSeparator>(1);
  const std::string notice = "This, and all articles of today\n";
  check({
      {"batch", clari, "#! rnews 5\nA\n#! rnews 9\nB\n", {kNone, "A\n", "B\n"}},
      {"blank lines make an article", clari, "\n#! rnews 5\nA", {"\n", "A"}},
      {"trailer",
       clari,
       "A\n--\n" + notice + "B\n#! rnews\nC\n--x\n" + notice,
       {"A\n--\n", "C\n--x\n"}},
      {"notice without dashes", clari, "--\nA\n" + notice, {"--\nA\n" + notice}},
      {"only the first notice counts", clari, "--\n" + notice + "--\n" + notice, {"--\n"}},
      {"location",
       location,
       "HARBOUR (UP) - text\nA\n#! rnews\nNone (here)\nB\n#! rnews\n-(\n",
       {"HARBOUR ", "", ""}},
  });
}

TEST_F(SeparatorTest, Times) {
  const Maker times = make<DiTimesSeparator>();
  check({
      {"documents",
       times,
       kBoundary + "..LD:\na\n..TE: b\n..F7:\nc\n" + kBoundary + "..TE:\n.\n",
       {kNone, "..LD:\na\n..TE: b\n", "..TE:\n"}},
      {"disarmed by text",
       times,
       "..TE: a\nb\n.c\n..TE:\n.d\n" + kBoundary,
       {"..TE: a\nb\n.c\n..TE:\n"}},
      {"two text fields", times, "..TE: a\n..TE: b\nc\n", {"..TE: a\n"}},
      {"no end of text", times, "a\n" + kBoundary + "b\n", {"a\n" + kBoundary + "b\n"}},
      {"and no last newline", times, "a\nb\nc", {"a\nb\n"}},
  });
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
