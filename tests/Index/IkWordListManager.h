// Documents in memory, as lists of words.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Document/DcDocument.h"
#include "Document/DcDocumentManager.h"
#include "Fun/FdStream.h"
#include "Word.h"

namespace vandrelle {

using Texts = std::vector<std::vector<std::string>>;  // documents of words

class WordListStream : public FdStream {
 public:
  explicit WordListStream(const std::vector<std::string>& words) : words_(words) {}
  void reset() override { next_ = 0, take(); }
  bool more() override { return next_ < words_.size(); }
  void next() override { ++next_, take(); }
  void* key() override { return word_.word(); }
  int keySize() override { return word_->num_bytes(); }

 private:
  void take() {
    if (more()) word_ = WmLocalWord(words_[next_].c_str());
  }
  const std::vector<std::string>& words_;
  std::size_t next_ = 0;
  WmLocalWord word_;
};

// A word with a leading blank becomes a special word of its document.
class WordListDocument : public DcDocument {
 public:
  WordListDocument(int number, const std::vector<std::string>& words) : number_(number) {
    for (const std::string& word : words) {
      if (word[0] == ' ') {
        addSpecialWord(word.c_str());
      } else {
        words_.push_back(word);
      }
    }
  }
  int documentNum() const override { return number_; }

 protected:
  FdStream* original_words() override { return new WordListStream(words_); }

 private:
  int number_;
  std::vector<std::string> words_;
};

class WordListManager : public DcDocumentManager {
 public:
  explicit WordListManager(Texts texts) : texts_(std::move(texts)) {}
  WordListManager(int documents, long kilobytes) : size_(kilobytes), count_(documents) {}
  DcDocument* documentNum(int num) override {
    return new WordListDocument(num, texts_[static_cast<std::size_t>(num)]);
  }
  int numDocuments() override { return count_ ? count_ : static_cast<int>(texts_.size()); }
  long corpusSize() override { return size_; }

 private:
  Texts texts_;
  long size_ = 0;
  int count_ = 0;
};

}  // namespace vandrelle
