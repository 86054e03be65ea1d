// A directory for the files of one test, and documents over texts in it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>

#include "Document/DcDocumentUtil.h"
#include "Document/DcFileStream.h"
#include "Document/DcMiniHeaderDocument.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "Tool/HeapText.h"

namespace vandrelle {

class DocumentFixture : public testing::Test {
 protected:
  DocumentFixture() {
    char name[] = "/tmp/vandrelle_document_XXXXXX";
    directory_ = mkdtemp(name);
  }
  ~DocumentFixture() override { std::filesystem::remove_all(directory_); }

  std::string path(const std::string& name) const { return directory_ + "/" + name; }

  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }

  std::string writeIntegers(const std::string& name, std::initializer_list<int> values) const {
    std::ofstream os(path(name), std::ios::binary);
    for (const int value : values) DcDocumentUtil::write_int32(os, value);
    return path(name);
  }

  std::string directory_;
};

// The text of an owned string that may be null.
inline std::string taken(char* text) {
  const HeapAptr<char> owner(text);
  return text == nullptr ? "(null)" : text;
}

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
