// A directory for the files of one test, and documents over texts in it or in memory.
#pragma once

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <sstream>

#include "Document/DcFileStream.h"
#include "Document/DcMiniHeaderDocument.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "Fun/FdStream.h"
#include "TestFiles.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Word.h"

namespace vandrelle {

class DocumentFixture : public DirectoryTest {
 protected:
  std::string path(const std::string& name) const { return directory_ / name; }

  std::string write(const std::string& name, const std::string& text) const {
    writeFile(path(name), text);
    return path(name);
  }

  // The file in big-endian integers.
  std::string writeIntegers(const std::string& name, std::initializer_list<int> values) const {
    std::string bytes;
    for (const int value : values) {
      char place[4];
      storeU32(place, static_cast<uint32>(value));
      bytes.append(place, 4);
    }
    return write(name, bytes);
  }
};

// The text of an owned string that may be null.
inline std::string taken(char* text) {
  const HeapAptr<char> owner(text);
  return text == nullptr ? "(null)" : text;
}

// The words of a document, each with a blank behind it.
inline std::string wordsOf(DcDocument* document) {
  const std::unique_ptr<FdStream> stream(document->words());
  std::ostringstream words;
  for (stream->reset(); stream->more(); stream->next()) {
    words << *static_cast<const WmWord*>(stream->key()) << ' ';
  }
  return words.str();
}

// A text whose first bytes are a header, in which an author is named and nothing else.
class TextPage : public DcHeaderDocument {
 public:
  explicit TextPage(std::string text, int headSize = 0)
      : text_(std::move(text)), headSize_(headSize) {}
  int documentNum() const override { return 0; }
  char* documentName() const override { return copyText("/site/docs/a.html"); }
  int numCharacters() const override { return static_cast<int>(text_.size()); }
  char* characters(long offset, int num, char* place) override {
    if (!source_) return nullptr;
    largestRead_ = std::max(largestRead_, num);
    text_.copy(place, static_cast<std::size_t>(num), static_cast<std::size_t>(offset));
    return place;
  }
  bool sourceAvailable() const override { return source_; }
  int HeadSize() const override { return headSize_; }
  char* getHeader(const char* header) override {
    return std::strcmp(header, "author") == 0 ? copyText("A. Writer") : nullptr;
  }

  bool source_ = true;
  int largestRead_ = 0;

 protected:
  FdStream* original_words() override { return nullptr; }

 private:
  std::string text_;
  int headSize_;
};

// What a parser makes of a text, the whole of it one document, or the part up to
// `docEnd`: the size of the header, then the document that has it.
struct ParsedDocument {
  ParsedDocument(DiHeaderParser& parser, const std::string& path, long docEnd = 0)
      : stream(path.c_str()), size(static_cast<int>(std::filesystem::file_size(path))) {
    headSize = parser.FindEndOfHeaders(&stream, docEnd);
    stream.clear();
    position = stream.tellg();
    document = std::make_unique<DcMiniHeaderDocument>(
        &parser, &stream, 0, docEnd != 0 ? static_cast<int>(docEnd) : size,
        headSize < 0 ? size : headSize, 0, path.c_str());
  }
  std::string header(const char* name) { return taken(document->getHeader(name)); }

  DcSourceStream stream;
  int size;
  int headSize;
  long position;
  std::unique_ptr<DcMiniHeaderDocument> document;
};

}  // namespace vandrelle
