// Documents in memory, as texts.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Document/DcDocumentManager.h"
#include "Document/DcSimpleDocument.h"
#include "Token.h"

namespace vandrelle {

using Texts = std::vector<std::string>;

// A word in front of a `|` becomes a special word of its document. Or none, but a
// number and a size of them.
class TextManager : public DcDocumentManager {
 public:
  explicit TextManager(Texts texts)
      : texts_(std::move(texts)), count_(static_cast<int>(texts_.size())) {}
  TextManager(int documents, long kilobytes) : size_(kilobytes), count_(documents) {}
  DcDocument* documentNum(int num) override {
    const std::string& text = texts_[static_cast<std::size_t>(num)];
    const std::size_t start = text.find('|') + 1;
    auto* document = new DcSimpleDocument(num, nullptr, text.data() + start,
                                          static_cast<int>(text.size() - start), nullptr,
                                          stemmer_.get(), lexer_.get());
    if (start != 0) document->addSpecialWord(text.substr(0, start - 1).c_str());
    return document;
  }
  int numDocuments() override { return count_; }
  long corpusSize() override { return size_; }

 private:
  const Texts texts_;
  const std::unique_ptr<TkStemmer> stemmer_{TkManager::NullStemmer()};
  const std::unique_ptr<TkLexer> lexer_{TkManager::SimpleTextLexer()};
  const long size_ = 0;
  const int count_ = 0;
};

}  // namespace vandrelle
