#include "Document/SpecialWords.h"

#include "Document/DcSimpleDocument.h"
#include "DocumentFixture.h"
#include "Token.h"

namespace vandrelle {
namespace {

std::string make(const std::string& field, const std::string& value) {
  char buffer[65];
  const std::string placed = SpecialWords::make(field.c_str(), value.c_str(), buffer);
  EXPECT_EQ(placed, taken(SpecialWords::make(field.c_str(), value.c_str(), nullptr)));
  return placed;
}

TEST(SpecialWords, ReadableUpTo63Letters) {
  EXPECT_EQ(make("title", "A Tale"), " title A Tale");
  const std::string longest = make("f", std::string(60, 'v'));
  EXPECT_EQ(longest, " f " + std::string(60, 'v'));
  EXPECT_EQ(longest.size(), 63u);
}

TEST(SpecialWords, HashedFrom64Letters) {
  // MD5 of "f", a blank and 61 times "v", in letters of 5 bits from the low bit.
  EXPECT_EQ(make("f", std::string(61, 'v')), "  u0jjmexhckac0dyhwcsclzh42f");
}

TEST(SpecialWords, ComeFirstTheLastAddedForemostUnfolded) {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::string text = "Plain text";
  DcSimpleDocument document(3, nullptr, text.data(), static_cast<int>(text.size()), nullptr,
                            stemmer.get(), lexer.get());
  document.addSpecialWord(" f A");
  document.addSpecialWord(" f B");
  const std::unique_ptr<FdStream> words(document.words());
  for (int pass = 0; pass < 2; ++pass) {
    std::string all;
    for (words->reset(); words->more(); words->next()) {
      char place[65];
      int size = sizeof place;
      words->key(place, &size);
      EXPECT_EQ(size, words->keySize());
      EXPECT_EQ(std::string(place, static_cast<std::size_t>(size)),
                std::string(static_cast<char*>(words->key()), static_cast<std::size_t>(size)));
      all += std::string(place + 1, static_cast<std::size_t>(size - 1)) + "|" +
             std::to_string(words->dataSize()) + "|";
    }
    EXPECT_EQ(all, " f B|0| f A|0|plain|12|text|12|");
  }
}

}  // namespace
}  // namespace vandrelle
