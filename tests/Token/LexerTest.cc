#include <memory>
#include <random>
#include <sstream>

#include "Token/NastyText.h"
#include "Token/TkTimesLexer.h"

namespace vandrelle {
namespace {

std::string text(const WmWord* word) {
  return {word->letters(), static_cast<std::size_t>(word->num_letters())};
}

std::unique_ptr<TkLexer> lexerOf(char kind) {
  if (kind == 't') return std::make_unique<TkTimesLexer>();
  return std::unique_ptr<TkLexer>(kind == 'h'   ? TkManager::HtmlLexer(0)
                                  : kind == 'c' ? TkManager::HtmlLexer(1)
                                  : kind == 'r' ? TkManager::RTFLexer()
                                                : TkManager::SimpleTextLexer());
}

// One line for what the lexer holds: word@start, flags behind a colon.
std::string state(TkLexer& lexer, const WmWord* word) {
  std::ostringstream os;
  os << text(word) << '@' << lexer.wordStart();
  if (lexer.flags() != 0) os << ':' << lexer.flags();
  return os.str();
}

// All words of `input`, with a blank between them.
std::string lex(TkLexer& lexer, const std::string& input) {
  std::string words;
  lexer.reset();
  const auto take = [&] {
    if (const WmWord* word = lexer.word()) words += (words.empty() ? "" : " ") + state(lexer, word);
  };
  for (char c : input) {
    lexer.nextCharacter(c);
    take();
  }
  lexer.end();
  take();
  return words;
}

TEST(Lexer, Words) {
  const std::string sixtyTwo(62, 'x');
  const struct {
    char kind;
    std::string input, words;
  } cases[] = {
      // Sentences, lines, paragraphs.
      {'s', "Hello. World", "hello@0:1 world@7"},
      {'s', "a.b U.S.A U.S. xx", "ab@0 usa@4 us@10 xx@15"},
      {'s', "one. 'two.' three", "one@0:1 two@6:1 three@12"},
      {'s', "end.\" Next", "end@0:1 next@6"},
      {'s', "one.x two?yy", "onex@0 two@6 yy@10"},
      {'s', "one\ntwo\n\nthree\n  four", "one@0:2 two@4:6 three@9:6 four@17"},
      {'s', "one.", "one@0:5"},
      {'s', "one\n", "one@0:6"},
      {'s', "   ", ""},
      {'s', "  . xx", "@4:1 xx@4"},  // a sentence of no word ends with an empty one
      // Apostrophes, hyphens, periods.
      {'s', "it's dogs' a'' bb", "it's@0 dogs@5 a'@11 bb@15"},
      {'s', "sxy' bus' asa' 'tis", "sxy@0 bus@5 asa'@10 tis@16"},
      {'s', "well-known well-\nknown a- bb", "well@0 known@5 wellknown@11:2 a@23 bb@26"},
      {'s', "ab--cd e-f a..bb", "ab@0 cd@4 e@7 f@9 a@11 bb@14"},
      // Lengths.
      {'s', sixtyTwo + " yy", sixtyTwo + "@0 yy@63"},
      {'s', sixtyTwo + "x y zz", "y@64 zz@66"},
      {'s', sixtyTwo + "x", ""},
      // Ampersands and high bytes.
      {'s', "caf&eacute;s x;y AT&T", "caf&eacute;s@0 x@13 y@15 at&t@17"},
      {'s', "caf\xe9s", "cafs@0"},
      {'s', "x \xc1gua", "x@0 &aacute;gua@2"},
      {'s', "x \xc0gua", "x@0 gua@2"},
      {'s', "x \xff.", "x@0 &yuml;@2:5"},
      {'s', "x \xd7 yy", "x@0 @2 yy@4"},
      // Tags and comments.
      {'h', "bo<b>ld</b> xx", "bold@0 xx@12"},
      {'h', "<script>var</script>", "var@8:4"},
      {'h', "a<!-- b -> cc", "a@0 cc@11"},
      {'h', "a<!-- b > c --\xe9> dd", "a@0 dd@17"},
      {'c', "a<!-- b -> cc", "a@0 b@6 cc@11"},
      {'h', "a <1 b< cc", "a@0 1@3 b@5 cc@8"},
      {'h', "one<a href='x. y'>two", "one@0:1 two@18"},
      {'h', "one<\np>two</p>three\n", "one@0:2 p@5 twothree@7:6"},
      {'h', "end.\nNext\n\nline", "end@0:1 next@5:2 line@11"},
      {'h', "a <x\xe9> bb", "a@0 &eacute;@4 bb@7"},
      // Control words and groups.
      {'r', "{\\fonttbl{\\f0{\\*\\x y}}}", ""},
      {'r', "{\\rtf1 One\\par two\\b0three}", "@7 one@7:4 two@15 three@21"},
      {'r', "a\\{b c\\'e9 dd", "a@0 b@3 c@5 dd@11"},
      {'r',
       "ab\xe9"
       "c x\n y&zz",
       "abc@0 x@5:2 y@8 zz@10"},
      // Field markers of the newspaper feed.
      {'t', "LD te word F7 o7 lead", "word@6 lead@17"},
      {'t', sixtyTwo + "x yy", sixtyTwo + "@0 yy@64"},
  };
  for (const auto& c : cases) EXPECT_EQ(lex(*lexerOf(c.kind), c.input), c.words) << c.input;
}

// Bulk feeding with any split and single feeding must agree in every word and
// in all that can be asked at it.
TEST(Lexer, ScanEqualsSteps) {
  std::mt19937 random(20240607);
  const auto held = [](TkLexer& lexer, bool atEnd) {
    const WmWord* word = lexer.word();
    return (word != nullptr ? text(word) : "(none)") + ' ' + std::to_string(lexer.flags()) +
           (atEnd ? ""
                  : ' ' + std::to_string(lexer.offset()) + ' ' + std::to_string(lexer.wordStart()));
  };
  for (char kind : {'s', 'h', 'c', 'r', 't'}) {
    const auto steps = lexerOf(kind), bulk = lexerOf(kind);
    for (int round = 0; round < 4000; ++round) {
      std::string input;
      for (int part = 0; part < 3; ++part) input += nastyText(random, 25);
      steps->reset();
      bulk->reset();
      const char* p = input.data();
      const char* const end = p + input.size();
      while (p != end) {
        const char* const split = p + 1 + random() % static_cast<unsigned long>(end - p);
        const char* const stop = bulk->scan(p, split);
        ASSERT_GT(stop, p);
        for (; p != stop; ++p) {
          steps->nextCharacter(*p);
          if (p + 1 != stop) {
            ASSERT_EQ(steps->word(), nullptr) << "scan ran over a word in " << input;
          }
        }
        ASSERT_EQ(held(*bulk, false), held(*steps, false)) << input;
      }
      steps->end();
      bulk->end();
      ASSERT_EQ(held(*bulk, true), held(*steps, true)) << input;
    }
  }
}

}  // namespace
}  // namespace vandrelle
