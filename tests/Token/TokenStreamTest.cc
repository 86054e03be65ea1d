#include <memory>
#include <random>
#include <sstream>

#include "Token/NastyText.h"
#include "Token/TkWPHLexer.h"

namespace vandrelle {
namespace {

// Drops "the" and words with a digit in front.
class DroppingStemmer : public TkStemmer {
 public:
  WmWord* stem(const WmWord* word, WmWord* place) override {
    WmWord* stem = pass_.stem(word, place);
    if (*stem == *WmLocalWord("the") || (stem->valid() && stem->letter(0) <= '9')) {
      stem->makeInvalid();
    }
    return stem;
  }

 private:
  TkPassStem pass_;
};

// Knows the end as soon as the last character was read, and offers no spans.
class OneByOneStream : public TkTokenStream {
 public:
  OneByOneStream(TkStemmer* stemmer, TkLexer* lexer, std::string text)
      : TkTokenStream(stemmer, lexer), text_(std::move(text)) {}
  int tokReset() override {
    next_ = 0;
    return 0;
  }
  int tokEnd() override { return next_ == text_.size(); }
  int tokNextCharacter() override {
    return tokEnd() ? -1 : static_cast<signed char>(text_[next_++]);
  }
  int tokPeekCharacter() override { return -1; }

 private:
  std::string text_;
  std::size_t next_ = 0;
};

TEST(TokenStream, Tokens) {
  const std::string tooLong(70, 'x');
  const struct {
    std::string input, early, late;  // by when the end is known
  } cases[] = {
      {"", "", ""},
      {"the", "", ""},
      {"the cat", "cat@4#1:0 ", "cat@4#1:0 "},
      {"one. the. Cat\n", "one@0#0:1 cat@10#2:6 ", "one@0#0:1 cat@10#2:6 "},
      // The last letter starts a word: it is lost if the end is known by then.
      {"one b", "one@0#0:0 ", "one@0#0:0 b@4#1:0 "},
      // A byte 0xFF counts as the first character of a word, and nowhere else.
      {"\xffo\xffne two", "one@1#0:0 two@5#1:0 ", "one@1#0:0 two@5#1:0 "},
      {"one t\xff\xffo six", "one@0#0:0 to@4#1:0 six@8#2:0 ", "one@0#0:0 to@4#1:0 six@8#2:0 "},
      // An over-long word is lost, unless the lexer is asked again before a character.
      {tooLong + " two", "two@71#0:0 ", "two@71#0:0 "},
      {tooLong + " b", std::string(62, 'x') + "@0#0:0 ", std::string(62, 'x') + "@0#0:0 "},
      {tooLong + " b\xff" + " two", std::string(62, 'x') + "@0#0:0 b@71#1:0 two@73#2:0 ",
       std::string(62, 'x') + "@0#0:0 b@71#1:0 two@73#2:0 "},
  };
  DroppingStemmer stemmer;
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  for (const auto& c : cases) {
    OneByOneStream steps(&stemmer, lexer.get(), c.input);
    TkMemoryStream early(&stemmer, lexer.get(), c.input.data(), c.input.size());
    TkMemoryStream late(&stemmer, lexer.get(), c.input.data(), c.input.size(), true);
    std::istringstream is(c.input);
    const std::unique_ptr<TkTokenStream> simple(
        TkManager::SimpleStream(&stemmer, lexer.get(), &is));
    EXPECT_EQ(tokens(steps), c.early) << c.input;
    EXPECT_EQ(tokens(early), c.early) << c.input;
    EXPECT_EQ(tokens(late), c.late) << c.input;
    EXPECT_EQ(tokens(*simple), c.late) << c.input;
  }
}

TEST(TokenStream, SpansEqualSteps) {
  DroppingStemmer stemmer;
  std::mt19937 random(7);
  TkCompleteWordPair pairs;
  for (int round = 0; round < 9000; ++round) {
    // Fresh lexers: one thing, an ampersand at the end, outlives a reset.
    const auto run = [&](auto make) {
      const std::unique_ptr<TkLexer> lexer(round % 3 == 0 ? TkManager::SimpleTextLexer()
                                                          : TkManager::HtmlLexer(round & 1));
      TkWPHLexer pairLexer(lexer.get(), &stemmer, &pairs);
      pairLexer.breakOnStopWords();
      const std::unique_ptr<TkTokenStream> stream(make(round % 5 == 0 ? &pairLexer : lexer.get()));
      return tokens(*stream);
    };
    const std::string input = nastyText(random, 60);
    const std::string early = run([&](TkLexer* lexer) {
      return new TkMemoryStream(&stemmer, lexer, input.data(), input.size());
    });
    ASSERT_EQ(early,
              run([&](TkLexer* lexer) { return new OneByOneStream(&stemmer, lexer, input); }))
        << input;
    const std::string late = run([&](TkLexer* lexer) {
      return new TkMemoryStream(&stemmer, lexer, input.data(), input.size(), true);
    });
    std::istringstream is(input);
    ASSERT_EQ(late,
              run([&](TkLexer* lexer) { return TkManager::SimpleStream(&stemmer, lexer, &is); }))
        << input;
  }
}

TEST(TokenStream, BadInputStreamEnds) {
  TkPassStem stemmer;
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  std::istringstream is("one two");
  is.setstate(std::ios::failbit);
  const std::unique_ptr<TkTokenStream> stream(TkManager::SimpleStream(&stemmer, lexer.get(), &is));
  EXPECT_EQ(tokens(*stream), "");
}

TEST(WordPair, HashSpellsBitsBehindABlank) {
  const struct {
    int bits;
    const char *w1, *w2, *pair;
  } cases[] = {
      // Codes 1 and 2, shifted by 0 and 3.
      {10, "b", "c", " ar"},
      // Codes 0, 26, 27 and 28, shifted by 0, 4, 7 and 11.
      {19, "a-", "'7", " b1ba"},
      // All on the same five bits.
      {5, "b", "d", " c"},
      {32, "a", "_", " aaaoqaa"},
  };
  for (const auto& c : cases) {
    char place[64];
    TkWordPairHashImpl hash(c.bits);
    std::ostringstream os;
    os << *hash.hash(WmLocalWord(c.w1).word(), WmLocalWord(c.w2).word(),
                     reinterpret_cast<WmWord*>(place));
    EXPECT_EQ(os.str(), c.pair);
  }
}

TEST(WordPair, PairsOfALexer) {
  const struct {
    const char* input;
    bool breaks;
    const char* pairs;
  } cases[] = {
      {"one", false, ""},
      {"one two the three", false, "one two@4#0:0 two three@12#1:0 "},
      {"one two the three four", true, "one two@4#0:0 three four@18#1:0 "},
      {"abcdefghijklmnopq two", false, "abcdefghijklmno two@18#0:0 "},
  };
  DroppingStemmer stemmer;
  TkPassStem pass;
  TkCompleteWordPair hash;
  const std::unique_ptr<TkLexer> inner(TkManager::SimpleTextLexer());
  for (const auto& c : cases) {
    TkWPHLexer lexer(inner.get(), &stemmer, &hash);
    if (c.breaks) lexer.breakOnStopWords();
    std::istringstream is(c.input);
    const std::unique_ptr<TkTokenStream> stream(TkManager::SimpleStream(&pass, &lexer, &is));
    EXPECT_EQ(tokens(*stream), c.pairs) << c.input;
  }
}

}  // namespace
}  // namespace vandrelle
