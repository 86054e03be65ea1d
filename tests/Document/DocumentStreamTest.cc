#include "Document/DcDocumentStream.h"

#include <random>

#include "Document/DcSimpleDocument.h"
#include "DocumentFixture.h"
#include "Token/NastyText.h"

namespace vandrelle {
namespace {

// The characters of a document one at a time, by the plain rules of blocks.
class ByteWiseStream : public TkTokenStream {
 public:
  ByteWiseStream(TkStemmer* stemmer, TkLexer* lexer, const std::string& body, int bufsize,
                 const char* fields)
      : TkTokenStream(stemmer, lexer), body_(body), bufsize_(bufsize), fields_(fields) {
    const int size = static_cast<int>(body.size());
    if (bufsize_ < size) {
      lastBlockSize_ = size % bufsize_;
      numBlocks_ = size / bufsize_ + 1;
    } else {
      lastBlockSize_ = bufsize_ = size;
    }
  }

 protected:
  int tokReset() override {
    blockNum_ = fields_ == nullptr ? 1 : 0;
    place_ = 0;
    return 0;
  }
  int tokEnd() override { return blockNum_ == numBlocks_ && place_ == lastBlockSize_; }
  int tokNextCharacter() override {
    if (blockNum_ == 0) {
      const char c = fields_[place_++];
      if (c == '\0') tokReset(), blockNum_ = 1;
      return static_cast<signed char>(c);
    }
    if (blockNum_ < numBlocks_ && place_ == bufsize_) {
      ++blockNum_;
      place_ = 0;
    }
    if (tokEnd()) return -1;
    return static_cast<signed char>(
        body_[static_cast<std::size_t>((blockNum_ - 1) * bufsize_ + place_++)]);
  }
  int tokPeekCharacter() override { return 0; }

 private:
  std::string body_;
  int bufsize_;
  const char* fields_;
  int numBlocks_ = 1;
  int lastBlockSize_ = 0;
  int blockNum_ = 0;
  int place_ = 0;
};

std::string randomText(std::mt19937& random, std::size_t size) {
  std::string text;
  while (text.size() < size) text += nastyText(random, 30);
  return text.substr(0, size);
}

TEST(DcDocumentStream, BlocksGiveTheTokensOfSingleBytes) {
  std::mt19937 random(11);
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  for (int round = 0; round < 3000; ++round) {
    const int bufsize = 1 + static_cast<int>(random() % 40);
    const int size = random() % 3 == 0 ? bufsize * static_cast<int>(random() % 4)
                                       : static_cast<int>(random() % 200);
    const int headSize = static_cast<int>(random() % 20);
    const std::string body = randomText(random, static_cast<std::size_t>(size));
    const std::string text = std::string(static_cast<std::size_t>(headSize), 'h') + body;
    const std::string fields = randomText(random, random() % 30);
    const bool withFields = random() % 3 != 0;
    // Fresh lexers: an ampersand at the end outlives a reset.
    std::unique_ptr<TkLexer> lexers[4];
    const auto kind = random() % 3;
    for (auto& lexer : lexers) {
      lexer.reset(kind == 0   ? TkManager::SimpleTextLexer()
                  : kind == 1 ? TkManager::HtmlLexer(0)
                              : TkManager::RTFLexer());
    }
    SCOPED_TRACE("round " + std::to_string(round) + ", block " + std::to_string(bufsize) +
                 ", body " + std::to_string(size));

    DcSimpleDocument whole(0, nullptr, text.data(), static_cast<int>(text.size()), nullptr,
                           stemmer.get(), nullptr);
    DcHeaderDocumentStream ours(stemmer.get(), lexers[0].get(), &whole, headSize, bufsize,
                                withFields ? copyText(fields.c_str()) : nullptr);
    ByteWiseStream expected(stemmer.get(), lexers[1].get(), body, bufsize,
                            withFields ? fields.c_str() : nullptr);
    ASSERT_EQ(tokens(ours), tokens(expected));

    DcDocumentStream plain(stemmer.get(), lexers[2].get(), &whole, bufsize);
    ByteWiseStream expectedPlain(stemmer.get(), lexers[3].get(), text, bufsize, nullptr);
    ASSERT_EQ(tokens(plain), tokens(expectedPlain));
  }
}

TEST(DcDocumentStream, FieldTextAndBodyAreTwoWords) {
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(0));
  const auto read = [&](const std::string& text, int headSize, const char* fields) {
    DcSimpleDocument document(0, nullptr, text.data(), static_cast<int>(text.size()), nullptr,
                              stemmer.get(), lexer.get());
    DcHeaderDocumentStream stream(stemmer.get(), lexer.get(), &document, headSize, 4096,
                                  copyText(fields));
    return tokens(stream);
  };
  EXPECT_EQ(read("headbody here", 4, "field"), "field@0#0:0 body@6#1:0 here@11#2:0 ");
  EXPECT_EQ(read("headbody", 4, ""), "body@1#0:0 ");
  EXPECT_EQ(read("headbody", 4, nullptr), "body@0#0:0 ");
  EXPECT_EQ(read("head", 4, "field"), "field@0#0:0 ");
  EXPECT_EQ(read("head", 9, nullptr), "");
  EXPECT_EQ(read("", 0, nullptr), "");
}

class DcDocumentTextTest : public DocumentFixture {};

TEST_F(DcDocumentTextTest, BlocksOfAFileAreClipped) {
  const std::string name = write("text", "0123456789");
  DcSourceStream stream(name.c_str());
  DcMiniHeaderDocument article(nullptr, &stream, 2, 5, 0, 0, nullptr);
  const auto characters = [&](long offset, int count) {
    char place[] = "--------";
    EXPECT_EQ(article.characters(offset, count, place), place);
    return std::string(place);
  };
  EXPECT_EQ(characters(0, 8), "23456---");
  EXPECT_EQ(characters(3, 1), "5-------");
  EXPECT_EQ(characters(4, 8), "6-------");
  EXPECT_EQ(characters(5, 8), "--------");
  EXPECT_EQ(characters(0, 5), "23456---");
  EXPECT_EQ(DcMiniHeaderDocument(nullptr, nullptr, 0, 5, 0, 0, nullptr).characters(0, 1, nullptr),
            nullptr);
  // The file has shrunk since: what cannot be read stays as it was.
  DcMiniHeaderDocument shrunk(nullptr, &stream, 8, 6, 0, 0, nullptr);
  char place[] = "--------";
  shrunk.characters(0, 6, place);
  EXPECT_STREQ(place, "89------");
  EXPECT_EQ(characters(0, 2), "23------");
}

}  // namespace
}  // namespace vandrelle
