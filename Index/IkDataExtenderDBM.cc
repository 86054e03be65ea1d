#include "Index/IkDataExtenderDBM.h"

#include <algorithm>

#include "Fun/FdBag.h"
#include "Fun/FdDBMManager.h"
#include "Fun/FdStream.h"
#include "Index/IkDataFile.h"
#include "Index/IkDataFileUnpacker.h"
#include "Index/IkException.h"
#include "Tool/ByteOrder.h"
#include "Tool/NameManager.h"

namespace vandrelle {

namespace {

constexpr std::size_t kScaleBytes = 4;
// A pair takes at most 8 bytes, and 10 must be free behind the last.
constexpr std::size_t kPairRoom = 8;
constexpr std::size_t kRowRoom = 10;
const std::string kCountKey(1, '\0');

std::string bytesOf(uint32 number) {
  char bytes[4];
  storeU32(bytes, number);
  return {bytes, sizeof bytes};
}

std::string bytesOf(const WmWord* word) {
  return {reinterpret_cast<const char*>(word), static_cast<std::size_t>(word->num_bytes())};
}

std::string packed(float scale, const std::vector<IkDocumentInfo>& pairs) {
  std::string row(kScaleBytes + kPairRoom * pairs.size() + kRowRoom, '\0');
  auto* bytes = reinterpret_cast<unsigned char*>(row.data());
  storeFloat(bytes, scale);
  const int size =
      IkDataFile::packBuffer(pairs.data(), static_cast<int>(pairs.size()), bytes + kScaleBytes,
                             static_cast<int>(row.size() - kScaleBytes));
  row.resize(kScaleBytes + static_cast<std::size_t>(std::max(size, 0)));
  return row;
}

void insert(FdBag* bag, const std::string& key, const std::string& data) {
  bag->insert(key.data(), static_cast<int>(key.size()), data.data(), static_cast<int>(data.size()));
}

}  // namespace

IkDataExtenderDBM::IkDataExtenderDBM(const char* rootname, int mode) : mode_(mode) {
  const NameManager name(rootname);
  const int open = mode == 0 ? FdDBMManager::kOpenReadOnly : FdDBMManager::kOpenOrCreate;
  wordbag_.reset(FdDBMManager::Hash(name.suffix(".xw"), open));
  databag_.reset(FdDBMManager::Hash(name.suffix(".xd"), open));
  std::string count;
  if (fetch(wordbag_.get(), kCountKey, &count)) {
    if (count.size() != 4) damaged();
    numWords_ = loadS32(count.data());
    if (numWords_ < 0) damaged();
  }
  const std::unique_ptr<FdStream> rows(databag_->iterator());
  for (rows->reset(); rows->more(); rows->next()) {
    if (rows->keySize() != 4) damaged();
    offsets_.push_back(loadU32(rows->key()));
  }
  std::sort(offsets_.begin(), offsets_.end());
  seekRow(0);
}

IkDataExtenderDBM::~IkDataExtenderDBM() = default;

void IkDataExtenderDBM::damaged() { THROW(Ik, "The tables of an extension are damaged"); }

void IkDataExtenderDBM::requireMode() const {
  if (mode_ == 0) THROW(Ik, "Cannot change an extension while in read-only mode.");
}

bool IkDataExtenderDBM::fetch(FdBag* bag, const std::string& key, std::string* data) {
  const int keySize = static_cast<int>(key.size());
  int size = 0;
  if (!bag->find(key.data(), keySize, nullptr, &size)) return false;
  data->resize(static_cast<std::size_t>(size));
  return bag->find(key.data(), keySize, data->data(), &size);
}

void IkDataExtenderDBM::addWord(const WmWord* word) {
  requireMode();
  if (!word->valid()) THROW(Ik, "The empty word can't be added");
  newWords_.add(word);
}

int IkDataExtenderDBM::lookupOffset(const WmWord* word, int* offset) {
  if (!word->valid()) return 0;
  int number = newWords_.find(word);
  std::string data;
  if (number >= 0) {
    number += numWords_;
  } else if (fetch(wordbag_.get(), bytesOf(word), &data)) {
    if (data.size() != 4) damaged();
    number = loadS32(data.data());
  } else {
    return 0;
  }
  *offset = static_cast<int>(kNewWord | static_cast<unsigned>(number));
  return 1;
}

int IkDataExtenderDBM::lookupWord(int word_num, WmWord* word) {
  if (word_num < 0) return 0;
  if (word_num >= numWords_) {
    if (word_num - numWords_ >= newWords_.count()) return 0;
    new (word) WmWord(*newWords_.word(word_num - numWords_));
    return 1;
  }
  std::string data;
  if (!fetch(wordbag_.get(), kCountKey + bytesOf(static_cast<uint32>(word_num)), &data)) damaged();
  const auto* found = reinterpret_cast<const WmWord*>(data.data());
  if (data.empty() || found->num_letters() > WmWord::kMaxLetters ||
      data.size() != static_cast<std::size_t>(found->num_bytes())) {
    damaged();
  }
  new (word) WmWord(*found);
  return 1;
}

void IkDataExtenderDBM::addData(int offset, int doc_num, int doc_freq) {
  requireMode();
  std::vector<IkDocumentInfo>& row = tmpbag_[static_cast<uint32>(offset)];
  if (!row.empty() && row.back().chunk == doc_num) {
    row.back().frequency += doc_freq;
  } else {
    row.push_back({doc_num, doc_freq});
  }
}

void IkDataExtenderDBM::done() {
  requireMode();
  for (const auto& [offset, added] : tmpbag_) {
    std::vector<IkDocumentInfo> pairs;
    std::string row;
    float scale = 0;
    if (loadRow(offset, &row)) {
      scale = loadFloat(row.data());
      IkDataFile::unpackPairs(reinterpret_cast<const unsigned char*>(row.data()) + kScaleBytes,
                              static_cast<int>(row.size() - kScaleBytes),
                              [&](int doc_num, int doc_freq) {
                                pairs.push_back({doc_num, doc_freq});
                              });
    } else {
      offsets_.push_back(offset);
    }
    pairs.insert(pairs.end(), added.begin(), added.end());
    changedRows_[offset] = packed(scale, pairs);
  }
  tmpbag_.clear();
  std::sort(offsets_.begin(), offsets_.end());
  seekRow(0);
}

void IkDataExtenderDBM::freeze() {
  requireMode();
  for (const auto& [offset, row] : changedRows_) insert(databag_.get(), bytesOf(offset), row);
  changedRows_.clear();
  for (int i = 0; i < newWords_.count(); ++i, ++numWords_) {
    const std::string number = bytesOf(static_cast<uint32>(numWords_));
    const std::string word = bytesOf(newWords_.word(i));
    insert(wordbag_.get(), word, number);
    insert(wordbag_.get(), kCountKey + number, word);
  }
  newWords_.clear();
  insert(wordbag_.get(), kCountKey, bytesOf(static_cast<uint32>(numWords_)));
}

bool IkDataExtenderDBM::loadRow(uint32 offset, std::string* row) {
  const auto changed = changedRows_.find(offset);
  if (changed != changedRows_.end()) {
    *row = changed->second;
  } else if (!fetch(databag_.get(), bytesOf(offset), row)) {
    return false;
  }
  if (row->size() < kScaleBytes) damaged();
  return true;
}

void IkDataExtenderDBM::seekRow(std::size_t place) {
  place_ = place;
  validBuffer_ = 0;
  if (place >= offsets_.size()) return;
  currentOffset_ = offsets_[place];
  validBuffer_ = loadRow(currentOffset_, &buffer_);
}

void IkDataExtenderDBM::seek(int offset) {
  const auto wanted = static_cast<uint32>(offset);
  const auto found = std::lower_bound(offsets_.begin(), offsets_.end(), wanted);
  const bool present = found != offsets_.end() && *found == wanted;
  seekRow(present ? static_cast<std::size_t>(found - offsets_.begin()) : offsets_.size());
}

int IkDataExtenderDBM::next() {
  if (validBuffer_) seekRow(place_ + 1);
  return validBuffer_;
}

float IkDataExtenderDBM::scale() { return validBuffer_ ? loadFloat(buffer_.data()) : 0.0f; }

void IkDataExtenderDBM::scale(float value) {
  if (mode_ == 0) THROW(Ik, "Cannot set scale while in read-only mode.");
  if (!validBuffer_) return;
  storeFloat(buffer_.data(), value);
  changedRows_[currentOffset_] = buffer_;
}

void IkDataExtenderDBM::unpackRow(IkDataFileUnpacker* functor, float scale) {
  if (!validBuffer_) return;
  IkDataFile::unpackBuffer(reinterpret_cast<const unsigned char*>(buffer_.data()) + kScaleBytes,
                           static_cast<int>(buffer_.size() - kScaleBytes), scale, functor,
                           deleter(), nullptr);
}

}  // namespace vandrelle
