#include "Index/IkMergeTempfile.h"

#include "Index/IkDataFile.h"
#include "Index/IkException.h"
#include "Index/IkProxBinder.h"
#include "Index/IkProxCreator.h"
#include "Index/IkTempfile.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

namespace {

constexpr std::uint32_t kMinRecordBytes = 4;

}  // namespace

IkMergeTempfile::IkMergeTempfile(const char* filename, const char* proxName) : name_(filename) {
  map_.bind(filename);
  if (proxName != nullptr) proxBinder_ = new IkProxBinder(proxName);
  reset();
}

IkMergeTempfile::~IkMergeTempfile() = default;

void IkMergeTempfile::reset() {
  next_ = static_cast<const unsigned char*>(map_.addr());
  end_ = next_ + map_.len();
}

void IkMergeTempfile::damaged(const char* what) const {
  THROW(Ik, "Temporary file '" << name_ << "' is damaged: " << what);
}

const WmWord* IkMergeTempfile::word() {
  if (next_ == end_ || *next_ == 0) return nullptr;
  const std::size_t size = std::size_t{*next_} + 1;
  if (static_cast<std::size_t>(end_ - next_) < size + 4) damaged("a word is cut off");
  const WmWord* found = reinterpret_cast<const WmWord*>(next_);
  next_ += size;
  return found;
}

int IkMergeTempfile::maxElements() {
  currentSize_ = loadU32(next_);
  next_ += 4;
  if (currentSize_ > static_cast<std::size_t>(end_ - next_)) damaged("a row is cut off");
  return static_cast<int>(currentSize_ / kMinRecordBytes + 1);
}

template <typename Take>
void IkMergeTempfile::eachPair(Take take) {
  const unsigned char* record = next_;
  const unsigned char* rowEnd = next_ + currentSize_;
  int chunk;
  int count;
  while (rowEnd - record >= static_cast<std::ptrdiff_t>(IkTempfile::kMaxRecordBytes)) {
    record = IkTempfile::decode(record, &chunk, &count);
    take(chunk, count);
  }
  if (record != rowEnd) {
    if (rowEnd - record != kMinRecordBytes || record[3] >= 128) damaged("a record is cut off");
    IkTempfile::decode(record, &chunk, &count);
    take(chunk, count);
  }
  next_ = rowEnd;
}

void IkMergeTempfile::unpack(int* row, int rowSize, int* total_num, IkProxCreator* prox) {
  eachPair([&](int chunk, int count) {
    if (chunk >= rowSize) {
      THROW(Ik, "Read document that is too large while unpacking (" << chunk << ")");
    }
    if (prox != nullptr) appendProximity(prox, count, row[chunk]);
    row[chunk] += count;
    ++*total_num;
  });
}

void IkMergeTempfile::unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator* prox) {
  IkDocumentInfo* last = start + *total_num - 1;
  bool none = *total_num == 0;
  eachPair([&](int chunk, int count) {
    // A chunk at whose first term the table was written out stands in two files.
    const bool continued = !none && last->chunk == chunk;
    if (prox != nullptr) appendProximity(prox, count, continued ? last->frequency : 0);
    if (continued) {
      last->frequency += count;
    } else {
      *++last = IkDocumentInfo{chunk, count};
      none = false;
    }
  });
  *total_num = static_cast<int>(last - start) + 1;
}

// A row counts up to a limit, and there are as many positions as it says.
void IkMergeTempfile::appendProximity(IkProxCreator* out, int freq, int before) {
  if (before == 0) out->reset();
  proxBinder_->reset();
  for (int i = 0; i < freq; ++i) {
    const uint32 position = proxBinder_->get();
    if (before + i < IkDataFile::kMaxFrequency) out->add(position);
  }
}

}  // namespace vandrelle
