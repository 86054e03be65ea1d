#include "Index/IkTransposeMerger.h"

#include <algorithm>
#include <memory>
#include <string>

#include "Index/IkDataFileBinder.h"
#include "Index/IkDataFileTransposeUnpacker.h"
#include "Index/IkException.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkTranspose.h"
#include "KeyFile.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr int kOutputBufferSize = 65536;

StStorage* emptied(StFileStorage* storage) {
  storage->Initialize();
  return storage;
}

}  // namespace

struct IkTransposeMerger::Source {
  Source(const char* root, const char* newWordNumbersFile)
      : keyfile(KfKeyFileManager::KdBind(root, kKdMapped)), newNumbers(newWordNumbersFile) {
    rows.bind(root, 0, 0);
    if (newNumbers.len() / 4 != keyfile->Num_Entries()) {
      THROW(Ik, "The new word numbers of the index '" << root << "' don't fit its words");
    }
  }
  int newNumber(int word) const {
    return loadS32(static_cast<const unsigned char*>(newNumbers.addr()) + std::int64_t{4} * word);
  }

  IkDataFileBinder rows;
  std::unique_ptr<KdFileAccessor> keyfile;
  SysToolsMapObject newNumbers;
};

IkTransposeMerger::IkTransposeMerger(const char* root, int range)
    : range_(range),
      target_(root, nullptr),
      storage_((std::string(root) + ".trp").c_str(), true),
      output_(emptied(&storage_), kOutputBufferSize) {
  const IkIndexInfo& info = *target_.info();
  if (info.totalNumChunks < 0 || info.numDigestWords <= 0 ||
      info.numDigestWords > IkDigestBuilder::kMaxDigestSize) {
    THROW(Ik, "The header of the index '" << root << "' holds a count out of range");
  }
  digest_.resize(static_cast<std::size_t>(info.numDigestWords) * IkTranspose::kEntryBytes);
  // Rows stand in the order of their words.
  IkDataFileBinder rows;
  rows.bind(root, 0, 0);
  for (; rows.more(); rows.next()) idfs_.push_back(rows.scale());
}

void IkTransposeMerger::addIndex(const char* source, const char* newWordNumbersFile, int first) {
  IkIndexInfo info;
  info.read((std::string(source) + ".info").c_str());
  const int documents = info.totalNumChunks;
  if (first < written_ || documents < 0 || documents > target_.info()->totalNumChunks - first) {
    THROW(Ik, "The merged index has fewer documents than its sources");
  }
  fillUpTo(first);
  Source opened(source, newWordNumbersFile);
  for (int begin = 0; begin < documents;) {
    const int end = begin + std::min(range_, documents - begin);
    addRange(&opened, first, begin, end);
    begin = end;
  }
}

void IkTransposeMerger::addRange(Source* source, int first, int begin, int end) {
  // A range that ends with document 0 would take nothing, which is meant for an
  // index of one document.
  const int last = std::max(first + end - 1, std::min(1, target_.info()->totalNumChunks - 1));
  IkDigestBuilder digests(last - first - begin + 1, target_.info()->numDigestWords);
  IkDataFileTransposeUnpacker unpacker(first + begin, last, &digests, target_.sumfile());
  const std::unique_ptr<KdStream> words(source->keyfile->iterator());
  int word = 0;
  for (words->reset(); words->more(); words->next(), ++word) {
    const int number = source->newNumber(word);
    // Special terms stay out of digests.
    if (number < 0 || words->key()->letter(0) == ' ') continue;
    const StStoragePos position = IkLocalWordTable::pos(words->data(), words->dataSize());
    source->rows.seek(position);
    if (source->rows.tell() != position || !source->rows.more() ||
        static_cast<std::size_t>(number) >= idfs_.size()) {
      THROW(Ik, "The row of word=" << *words->key() << " is outside of the row data file");
    }
    const float idf = idfs_[static_cast<std::size_t>(number)];
    unpacker.wordnum(number);
    source->rows.unpackPairs([&](int doc, int frequency) {
      if (doc >= begin && doc < end) unpacker.action(first + doc, frequency, idf);
    });
  }
  for (int doc = begin; doc < end; ++doc) {
    digests.store(doc - begin, digest_.data());
    output_.put(digest_.data(), digest_.size());
  }
  written_ += end - begin;
}

void IkTransposeMerger::fillUpTo(int doc) {
  std::fill(digest_.begin(), digest_.end(), static_cast<unsigned char>(0));
  for (; written_ < doc; ++written_) output_.put(digest_.data(), digest_.size());
}

void IkTransposeMerger::done() {
  fillUpTo(target_.info()->totalNumChunks);
  output_.flush();
  storage_.Flush();
}

}  // namespace vandrelle
