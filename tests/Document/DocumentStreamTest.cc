#include "Document/DcDocumentStream.h"

#include <random>

#include "Document/DcSimpleDocument.h"
#include "DocumentFixture.h"
#include "Token/NastyText.h"

namespace vandrelle {
namespace {

std::string randomText(std::mt19937& random, std::size_t size) {
  std::string text;
  while (text.size() < size) text += nastyText(random, 30);
  return text.substr(0, size);
}

// The text of the fields, a zero byte that ends its last word, and the body.
TEST(DcDocumentStream, BlocksGiveTheTokensOfOneRun) {
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
    SCOPED_TRACE("round " + std::to_string(round) + ", block " + std::to_string(bufsize) +
                 ", body " + std::to_string(size));
    // Fresh lexers: an ampersand at the end outlives a reset.
    const auto kind = random() % 3;
    const auto freshLexer = [kind] {
      return std::unique_ptr<TkLexer>(kind == 0   ? TkManager::SimpleTextLexer()
                                      : kind == 1 ? TkManager::HtmlLexer(0)
                                                  : TkManager::RTFLexer());
    };
    // The end is known late when it lies at the end of a block behind others.
    const auto inOneRun = [&](const std::string& all, int inBlocks) {
      const bool late = inBlocks > bufsize && inBlocks % bufsize == 0;
      const auto lexer = freshLexer();
      TkMemoryStream stream(stemmer.get(), lexer.get(), all.data(), all.size(), late);
      return tokens(stream);
    };
    DcSimpleDocument whole(0, nullptr, text.data(), static_cast<int>(text.size()), nullptr,
                           stemmer.get(), nullptr);
    const auto headed = freshLexer(), plain = freshLexer();
    DcHeaderDocumentStream withHeader(stemmer.get(), headed.get(), &whole, headSize, bufsize,
                                      withFields ? copyText(fields.c_str()) : nullptr);
    ASSERT_EQ(tokens(withHeader),
              inOneRun(withFields ? fields.c_str() + std::string(1, '\0') + body : body, size));
    DcDocumentStream stream(stemmer.get(), plain.get(), &whole, bufsize);
    ASSERT_EQ(tokens(stream), inOneRun(text, headSize + size));
  }
}

TEST(DcDocumentStream, HeaderBeyondTheTextLeavesNothing) {
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(0));
  DcSimpleDocument document(0, nullptr, "head", 4, nullptr, stemmer.get(), lexer.get());
  for (const int headSize : {4, 9}) {
    DcHeaderDocumentStream stream(stemmer.get(), lexer.get(), &document, headSize, 4096, nullptr);
    EXPECT_EQ(tokens(stream), "");
  }
}

using DcDocumentTextTest = DocumentFixture;
using DcFileStreamTest = DocumentFixture;

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

std::string state(std::istream& stream) {
  return std::string(stream.eof() ? "e" : "-") + (stream.fail() ? "f" : "-") + " " +
         std::to_string(static_cast<long>(stream.tellg()));
}

// One random operation, told as text.
std::string step(std::istream& stream, int operation, int size) {
  std::string result(static_cast<std::size_t>(size), '.');
  if (operation == 0) stream.seekg(size);
  if (operation == 1) stream.seekg(size % 50 - 25, std::ios::cur);
  if (operation == 2) stream.seekg(-size, std::ios::end);
  if (operation == 3) stream.read(result.data(), size);
  if (operation == 4) result = std::to_string(stream.get());
  if (operation == 5) result = std::to_string(stream.peek());
  if (operation == 6) stream.getline(result.data(), size + 1), result = result.c_str();
  return result + std::to_string(operation == 3 ? stream.gcount() : 0) + state(stream);
}

TEST_F(DcFileStreamTest, BehavesAsTheStandardStream) {
  std::mt19937 random(7);
  for (const int fileSize : {0, 1, 31, 32, 33, 64, 700}) {
    std::string text;
    for (int i = 0; i < fileSize; ++i)
      text += static_cast<char>(random() % 9 == 0 ? '\n' : random());
    const std::string name = write("text", text);
    DcSourceStream ours(name.c_str(), 32);
    std::ifstream standard(name, std::ios::binary);
    for (int i = 0; i < 4000; ++i) {
      const int operation = static_cast<int>(random() % 7);
      const int size = static_cast<int>(random() % 80);
      ASSERT_EQ(step(ours, operation, size), step(standard, operation, size))
          << "file of " << fileSize << ", step " << i << ", operation " << operation;
      if (random() % 2 == 0 || !ours) {
        ours.clear();
        standard.clear();
      }
    }
  }
}

}  // namespace
}  // namespace vandrelle
