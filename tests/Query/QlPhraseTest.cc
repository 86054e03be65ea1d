// Phrases against a search through the texts themselves, and on damaged files.

#include "Query/QlPhrase.h"

#include <algorithm>
#include <random>

#include "Index/IkIndexer.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkTestTools.h"

namespace vandrelle {
namespace {

using Text = std::vector<WmMagicWord>;

constexpr std::size_t kDeleted = 3;  // documents with this rest by 5, if any

// Texts of few different words, so that phrases repeat, and their index.
class QlPhraseTest : public DirectoryTest {
 protected:
  void build(std::size_t documents, unsigned longest) {
    IkIndexer indexer(root_.c_str());
    for (std::size_t i = 0; i < documents; ++i) {
      texts_.push_back(randomText(random_() % (longest + 1)));
      for (std::size_t position = 0; position < texts_[i].size(); ++position) {
        indexer.addTerm(texts_[i][position].word(), static_cast<int>(i),
                        static_cast<int>(position));
      }
    }
    indexer.makeIndex();
  }

  // The later a word is in the alphabet, the rarer.
  Text randomText(std::size_t length) {
    Text text;
    while (text.size() < length) text.push_back(word(std::min(random_() % 9, random_() % 9)));
    return text;
  }
  static WmMagicWord word(std::size_t number) {
    return WmMagicWord(std::string(1, static_cast<char>('a' + number)).c_str());
  }

  std::vector<int> expected(const Text& phrase, bool deletions) const {
    std::vector<int> documents;
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      if (deletions && i % 5 == kDeleted) continue;
      const Text& text = texts_[i];
      if (std::search(text.begin(), text.end(), phrase.begin(), phrase.end()) != text.end()) {
        documents.push_back(static_cast<int>(i));
      }
    }
    return documents;
  }

  const std::string root_ = directory_ / "phrase";
  std::mt19937 random_{4};
  std::vector<Text> texts_;
};

TEST_F(QlPhraseTest, FindsWhatTheTextsHave) {
  build(200, 200);
  int found = 0;
  for (const bool deletions : {false, true}) {
    if (deletions) {
      std::string vector = std::string("\0\0\0\xC8\0\0\0\x28", 8) + std::string(25, '\0');
      for (std::size_t i = kDeleted; i < 200; i += 5) {
        vector[8 + i / 8] = static_cast<char>(vector[8 + i / 8] | 0x80 >> i % 8);
      }
      writeBytes(root_ + ".xk", vector);
    }
    IkLocalIndexBinder binder(root_.c_str(), nullptr);
    QlPhrase phrase(&binder);
    for (int i = 0; i < 400; ++i) {
      const Text words = randomText(random_() % 6);
      const std::vector<int> wanted =
          words.empty() ? std::vector<int>() : expected(words, deletions);
      found += wanted.empty() ? 0 : 1;
      ASSERT_EQ(phrase.documents(words), wanted);

      int matches = 0;
      const std::vector<PrTuple> best = phrase.retrieve(words, 7, &matches);
      ASSERT_EQ(matches, static_cast<int>(wanted.size()));
      ASSERT_EQ(best.size(), std::min<std::size_t>(wanted.size(), 7));
      for (std::size_t place = 0; place < best.size(); ++place) {
        EXPECT_TRUE(std::binary_search(wanted.begin(), wanted.end(), best[place].doc));
        EXPECT_GT(best[place].score, 0);
        EXPECT_LE(best[place].score, best[place > 0 ? place - 1 : 0].score);
      }
    }
    EXPECT_EQ(phrase.documents({word(0), word(20)}), std::vector<int>());
  }
  EXPECT_GT(found, 100);
}

// Every prefix of either file, each of its bytes changed, and noise: a phrase then has
// an answer or a message.
TEST_F(QlPhraseTest, DamageIsAnError) {
  build(20, 12);
  std::unique_ptr<IkLocalIndexBinder> binder;
  std::unique_ptr<QlPhrase> phrase;
  const auto messages = [&](const std::string& path, const std::string& bytes) {
    writeBytes(path, bytes);
    binder = std::make_unique<IkLocalIndexBinder>(root_.c_str(), nullptr);
    phrase = std::make_unique<QlPhrase>(binder.get());
    std::string all;
    for (const Text& words : {Text{word(0), word(1)}, Text{word(1), word(0), word(2)},
                              Text{word(8), word(0)}, Text{word(6), word(6)}}) {
      all += thrownBy([&] {
        for (const int document : phrase->documents(words)) ASSERT_LT(document, 20);
      });
    }
    return all;
  };
  for (const char* suffix : {".prx", ".prx.map"}) {
    const std::string path = root_ + suffix;
    const std::string sound = bytesOf(path);
    for (std::size_t at = 0; at < sound.size(); ++at) {
      messages(path, sound.substr(0, at));
      for (const int change : {0x01, 0x80, 0xFF}) {
        messages(path, flipped(sound, at, change));
      }
    }
    messages(path, noise(1000000));
    EXPECT_EQ(messages(path, sound), "");
    EXPECT_NE(messages(path, ""), "");
    writeBytes(path, sound);
  }
}

}  // namespace
}  // namespace vandrelle
