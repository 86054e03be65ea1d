#include "Index/IkIndexer.h"

#include <unistd.h>

#include <bit>
#include <cstdio>
#include <memory>

#include "Index/IkException.h"
#include "Index/IkMergeTempfile.h"
#include "Index/IkMerger.h"
#include "Index/IkProxCreator.h"
#include "Index/IkTempfile.h"
#include "Index/IkTransposeCreator.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr std::size_t kPairBytes = 8;      // what a pair counts against allocsize()
constexpr std::size_t kPositionBytes = 4;  // and a position

}  // namespace

IkIndexer::IkIndexer(const char* rootname) : IkCreatorImpl(rootname) {}

IkIndexer::~IkIndexer() {
  drain();
  if (!wordTable_.empty()) makeIndex();
}

std::size_t IkIndexer::allocsize(std::size_t n) {
  // A power of two of 1, of 256 or of 65,536 bytes. The last scale shifts by 25
  // and adds nothing: no block is larger than 16 MB, and the test below ends the
  // run there.
  std::size_t size;
  if (n <= 0xFF) {
    size = std::bit_ceil(n);
  } else if (n <= 0xFFFF) {
    size = std::bit_ceil((n - 1) / 0x100 + 1) * 0x100;
  } else if (n <= 0xFFFFFF) {
    size = std::bit_ceil((n - 1) / 0x10000 + 1) * 0x10000;
  } else {
    size = std::bit_ceil((n - 1) >> 25) << 24;
  }
  if (size < n) THROW(Fatal, "bobo size calculation");
  return size;
}

void IkIndexer::addTerm(const WmWord* word, int chunk, int pos) {
  if (static_cast<unsigned>(word->num_letters() - 1) >= WmWord::kMaxLetters) {
    if (!word->valid()) return;
    THROW(Ik, "A word of " << word->num_letters() << " letters can't be indexed");
  }
  if (chunk >= info_.totalNumChunks) info_.totalNumChunks = chunk + 1;
  PendingTerm& term = queue_[queued_ % kQueueSize];
  new (term.word.word()) WmWord(*word);
  term.hash = IkTermTable::hash(word);
  term.chunk = chunk;
  term.pos = pos;
  wordTable_.prefetchSlot(term.hash);
  ++queued_;
  if (queued_ - entered_ > kQueueSize / 2) {
    wordTable_.prefetchEntry(queue_[(queued_ - kQueueSize / 2) % kQueueSize].hash);
  }
  if (queued_ - entered_ == kQueueSize) enterTerm(queue_[entered_++ % kQueueSize]);
}

void IkIndexer::drain() {
  while (entered_ != queued_) enterTerm(queue_[entered_++ % kQueueSize]);
}

IkIndexerTableEntry& IkIndexer::newEntry(const PendingTerm& term) {
  bool added;
  IkIndexerTableEntry& entry = wordTable_.entry(term.word.word(), term.hash, &added);
  // The only accounting: distinct words, not their pairs or positions.
  if (added) bytesUsed_ += ((term.word->num_letters() + 16) & ~15) + 16;
  return entry;
}

void IkIndexer::enterTerm(const PendingTerm& term) {
  const int chunk = term.chunk;
  IkIndexerTableEntry& entry = newEntry(term);
  if (entry.chunk == chunk) {
    ++entry.count;
  } else {
    if (entry.chunk >= 0) {
      wordTable_.finishPair(entry);
      if ((entry.numPairs & 0xFFFFF) == 0) allocsize(kPairBytes * (entry.numPairs + 1));
    }
    entry.chunk = chunk;
    entry.count = 1;
  }
  // As many positions as the file can count, so that its readers stay in step.
  if (recordProximity_ && entry.count <= IkTempfile::kMaxCount) addPosition(entry, term.pos);
  if (bytesUsed_ > maxBytesUsed_ && chunk != lastDoc_) flushToFile();
  lastDoc_ = chunk;
}

void IkIndexer::addPosition(const IkIndexerTableEntry& entry, int pos) {
  if (entry.number >= proxEntries_.size()) proxEntries_.resize(entry.number + 1);
  Positions& positions = proxEntries_[entry.number];
  if ((positions.size() & 0xFFFFF) == 0) allocsize(kPositionBytes * (positions.size() + 1));
  positions.push_back(pos);
}

std::string IkIndexer::tempfileName(const std::string& root, int number) {
  char suffix[20];
  std::snprintf(suffix, sizeof suffix, ".tmp%03d", number);
  return root + suffix;
}

void IkIndexer::flushTempfiles() {
  drain();
  if (!wordTable_.empty()) flushToFile();
}

void IkIndexer::discard() {
  entered_ = queued_;
  resetTables();
}

void IkIndexer::resetTables() {
  wordTable_.clear();
  proxEntries_.clear();
  bytesUsed_ = 0;
}

void IkIndexer::flushToFile() {
  const std::string name = tempfileName(name_.suffix(nullptr), filenum_);
  IkTempfile file(name.c_str());
  std::unique_ptr<IkProxCreator> prox;
  if (recordProximity_) {
    prox = std::make_unique<IkProxCreator>(IkProxfileName(name.c_str()).c_str());
  }
  ++filenum_;
  for (IkIndexerTableEntry* entry : wordTable_.sorted()) {
    wordTable_.finishPair(*entry);
    if (entry->tooFrequent != 0) {
      const unsigned char* record = entry->records;
      for (std::uint32_t i = 0; i < entry->numPairs; ++i) {
        int chunk;
        int count;
        record = IkTempfile::decode(record, &chunk, &count);
        if (count == IkTempfile::kMaxCount) IkTempfile::logTooFrequent(chunk);
      }
    }
    file.writeWord(entry->word());
    file.addRecords(entry->records, entry->recordBytes);
    file.writeLine();
    if (prox) writeProximity(*entry, prox.get());
  }
  file.writeEOF();
  resetTables();
}

void IkIndexer::writeProximity(const IkIndexerTableEntry& entry, IkProxCreator* prox) {
  const Positions& positions = proxEntries_[entry.number];
  std::size_t next = 0;
  const unsigned char* record = entry.records;
  int chunk;
  int count;
  for (std::uint32_t pair = 0; pair < entry.numPairs; ++pair) {
    record = IkTempfile::decode(record, &chunk, &count);
    prox->reset();
    for (int i = 0; i < count; ++i) prox->add(static_cast<uint32>(positions[next++]));
  }
}

void IkIndexer::makeIndex() {
  drain();
  if (!wordTable_.empty()) makeIndexOfRun();
}

void IkIndexer::makeIndexOfRun() {
  flushTempfiles();
  if (filenum_ == startfilenum_) return;
  std::vector<std::string> names;
  for (int i = startfilenum_; i < filenum_; ++i) {
    names.push_back(tempfileName(name_.suffix(nullptr), i));
  }
  compile(names);
}

void IkIndexer::addTempfile(const char* tmpname) {
  if (::access(tmpname, R_OK) != 0) return;
  if (recordProximity_) IkProxfileName(tmpname);
  tempfiles_.emplace_back(tmpname);
}

void IkIndexer::makeIndexExplicitTempfiles() {
  if (tempfiles_.empty()) return;
  std::vector<std::string> names;
  names.swap(tempfiles_);
  compile(names);
}

void IkIndexer::compile(const std::vector<std::string>& tempfiles) {
  IkMerger merger(static_cast<int>(tempfiles.size()));
  int i = 0;
  for (const std::string& file : tempfiles) {
    const std::string prox = recordProximity_ ? IkProxfileName(file.c_str()) : std::string();
    merger.mergeObject(
        i++, new IkMergeTempfile(file.c_str(), recordProximity_ ? prox.c_str() : nullptr));
  }
  compileIndex(&name_, &merger);
  writeInfo();
}

std::string IkProxfileName(const char* tmpname) {
  std::string name(tmpname);
  const std::size_t place = name.rfind(".tmp");
  if (place == std::string::npos) THROW(Ik, "Filename does not contain .tmp");
  return name.replace(place, 4, ".prx");
}

void IkIndexer::makeTranspose() {
  LOG(1, 1, "Indexing, stage 3");
  IkTransposeCreator transposer(name_.suffix(nullptr));
  transposer.numDigestWords(info_.numDigestWords);
  transposer.makeIndex();
}

void IkIndexer::resetInfo() {
  info_.numTerms = 0;
  info_.totalNumChunks = 0;
  info_.numDeletedChunks = 0;
}

void IkIndexer::readInfo() { info_.read(name_.suffix(".info")); }

void IkIndexer::writeInfo() { info_.write(name_.suffix(".info")); }

}  // namespace vandrelle
