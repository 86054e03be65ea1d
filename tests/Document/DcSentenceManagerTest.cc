#include "Document/DcSentenceManager.h"

#include <vector>

#include "Document/DcParagraphManager.h"
#include "Document/DcSimpleDocument.h"
#include "DocumentFixture.h"
#include "Token.h"

namespace vandrelle {
namespace {

using Texts = std::vector<std::string>;

std::string textOf(DcDocument* document) {
  auto* simple = DESCRIPTOR_CAST(DcSimpleDocument, document);
  if (simple == nullptr) return "(null)";
  return {simple->buffer(), static_cast<std::size_t>(simple->numCharacters())};
}

Texts documents(DcDocumentManager& manager) {
  Texts texts;
  for (int i = 0; i < manager.numDocuments(); ++i) {
    const std::unique_ptr<DcDocument> document(manager.documentNum(i));
    texts.push_back(textOf(document.get()));
  }
  return texts;
}

Texts sentences(const char* text, int numSegments = 1, int slideSize = 0, int slideType = 0) {
  DcSentenceManager manager(text, nullptr, nullptr, numSegments, slideSize, slideType);
  return documents(manager);
}

TEST(DcSentenceManager, CutsAtMarks) {
  const struct {
    const char* text;
    Texts sentences;
  } cases[] = {
      {"", {}},
      {"a", {}},
      {"abc", {}},  // the first character counts for nothing
      {"abcd", {"abcd"}},
      {"no mark at all", {"no mark at all"}},
      {"One here. Two there! Three? Four", {"One here.", " Two there!", " Three?", " Four"}},
      {"Ask J. Smith now. Good.", {"Ask J. Smith now.", " Good."}},
      {"Ask Dr. Smith now.", {"Ask Dr.", " Smith now."}},
      {"In the U.S.A. it is. Done it.", {"In the U.S.A. it is.", " Done it."}},
      {"It is 3.14 long. End it.", {"It is 3.14 long.", " End it."}},
      {"Cost 314.5 here", {"Cost 314.5 here"}},
      {"He said \"Go on.\" Then left.", {"He said \"Go on.\"", " Then left."}},
      {"Ends here.'`\" x", {"Ends here.'`\""}},  // two characters behind it are lost
      {"Ends here. xy", {"Ends here.", " xy"}},
      {"First one.?. Next one.", {"First one.", "?. Next one."}},
      {"''a''. not an end", {"''a''. not an end"}},
      // the second character is the first that counts, so `I.` is an initial
      {"xI. Here", {"xI. Here"}},
      {"\xE9t\xE9. Suite. Fin", {"\xE9t\xE9.", " Suite.", " Fin"}},
  };
  for (const auto& c : cases) EXPECT_EQ(sentences(c.text), c.sentences) << c.text;
}

TEST(DcSentenceManager, Windows) {
  const char* text = "One is. Two is. Three is. Four is. Five is.";
  EXPECT_EQ(sentences(text, 2), (Texts{"One is. Two is.", " Three is. Four is."}));
  EXPECT_EQ(sentences(text, 2, 0, 1),
            (Texts{"One is. Two is.", " Three is. Four is.", " Five is."}));
  EXPECT_EQ(sentences(text, 3, 1),
            (Texts{"One is. Two is. Three is.", " Two is. Three is. Four is.",
                   " Three is. Four is. Five is."}));
  EXPECT_EQ(sentences(text, 9), Texts{});
  EXPECT_EQ(sentences(text, 9, 0, 1), Texts{text});
}

TEST(DcSentenceManager, ADocumentsBody) {
  TextPage page("Head. Line.\nOne is. Two is.", 12);
  DcSentenceManager manager(&page, nullptr, nullptr, 1, 0, 0);
  EXPECT_EQ(documents(manager), (Texts{"One is.", " Two is."}));
  const std::unique_ptr<DcDocument> second(manager.documentNum(1));
  const HeapAptr<char> name(second->documentName());
  EXPECT_STREQ(name.get(), "/site/docs/a.html:sent1");
  // The letters behind the colon count as 0.
  const std::unique_ptr<DcDocument> named(manager.documentName(name.get()));
  EXPECT_EQ(textOf(named.get()), "One is.");
  page.source_ = false;
  EXPECT_EQ(manager.documentNum(0), nullptr);
  DcSentenceManager gone(&page, nullptr, nullptr, 1, 0, 0);
  EXPECT_EQ(gone.numDocuments(), 0);
  for (const int headSize : {27, 28, -1}) {
    TextPage odd("Head. Line.\nOne is. Two is.", headSize);
    DcSentenceManager body(&odd, nullptr, nullptr, 1, 0, 0);
    EXPECT_EQ(body.numDocuments(), headSize < 0 ? 4 : 0);
  }
}

TEST(DcLSentenceManager, AsksTheLexer) {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  for (int run = 0; run < 2; ++run) {  // the second finds the lexer used
    DcLSentenceManager manager("One is here. Two is there. And", nullptr, lexer.get(), 1, 0, 0);
    EXPECT_EQ(documents(manager), (Texts{"One is here. ", "Two is there. ", "And"}));
    DcParagraphManager paragraphs("One.\nTwo.\n\nThree.\n\nFour", nullptr, lexer.get(), 1, 0, 0);
    EXPECT_EQ(documents(paragraphs), (Texts{"One.\nTwo.\n\n", "Three.\n\n", "Four"}));
  }
  TextPage page("Some words.");
  DcParagraphManager manager(&page, nullptr, lexer.get(), 1, 0, 0);
  const HeapAptr<char> name(manager.numToName(3));
  EXPECT_STREQ(name.get(), "/site/docs/a.html:para3");
}

}  // namespace
}  // namespace vandrelle
