#include "Document/DcFileStream.h"

#include <random>

#include "DocumentFixture.h"

namespace vandrelle {
namespace {

class DcFileStreamTest : public DocumentFixture {};

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
