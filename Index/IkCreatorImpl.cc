#include "Index/IkCreatorImpl.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "Document/DcAsciiDocument.h"
#include "Document/DcDocumentManager.h"
#include "Fun/FdStream.h"
#include "Index/IkDataFileCreator.h"
#include "Index/IkDocumentInfo.h"
#include "Index/IkException.h"
#include "Index/IkIdfCreator.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkMerger.h"
#include "Index/IkProxCreator.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Storage/StFileStorage.h"
#include "Storage/StPosMapCreator.h"
#include "Token/TkWordPair.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr uint32 kPosMapInterval = 128;

// Writes a whole small file beside the index. Throws _Exception_IkIO.
void writeFile(const std::string& filename, const std::vector<unsigned char>& bytes) {
  if (!SysTools::writeFile(filename.c_str(), bytes.data(), bytes.size())) {
    THROW(IkIO, "Couldn't write '" << filename << "'");
  }
}

std::vector<unsigned char> bigEndian(const std::vector<float>& values) {
  std::vector<unsigned char> bytes(values.size() * 4);
  for (std::size_t i = 0; i < values.size(); ++i) storeFloat(&bytes[i * 4], values[i]);
  return bytes;
}

// The positions of an earlier index of this name must not pass for those of the new
// one.
void removePositions(const NameManager& name) {
  for (const char* suffix : {".prx.map", ".prx"}) StFileStorage::Remove(name.suffix(suffix));
}

// Hands the (chunk, frequency) pairs of the merger's current row to `take`.
template <typename Take>
void eachPair(const IkMerger& merger, const int* row, int rowSize, Take take) {
  const int pairs = merger.sparseSize();
  if (pairs >= 0) {
    const IkDocumentInfo* info = reinterpret_cast<const IkDocumentInfo*>(row);
    for (int i = 0; i < pairs; ++i) take(info[i].chunk, info[i].frequency);
  } else {
    for (int chunk = 0; chunk < rowSize; ++chunk) {
      if (row[chunk] > 0) take(chunk, row[chunk]);
    }
  }
}

}  // namespace

IkCreatorImpl::IkCreatorImpl(const char* rootname) : name_(rootname) {
  info_.numTerms = 0;
  info_.totalNumChunks = 0;
  info_.numDigestWords = 32;
  info_.mergeMaxWords = 10000;
  info_.mergeMaxDocs = 100000;
  info_.bufferSize = 32768;
  info_.minDocumentLength = 400.0f;
  info_.similarityVersion = 0;
  info_.numDeletedChunks = 0;
}

IkCreatorImpl::~IkCreatorImpl() = default;

void IkCreatorImpl::showProgress(float freq) { progress_freq_ = freq; }

void IkCreatorImpl::addDocuments(DcDocumentManager* docs, int first_doc, int last_doc) {
  const int size = docs->numDocuments();
  if (last_doc == 0 || last_doc >= size) last_doc = size - 1;
  LOG(1, 1, "Indexing, stage 1");
  std::unique_ptr<TkWordPairHash> pairHash;
  if (hashbits_ != 0) pairHash = std::make_unique<TkWordPairHashImpl>(hashbits_);
  float progress = 0;
  for (int chunk = first_doc; chunk <= last_doc; ++chunk) {
    addDocument(docs, chunk, pairHash.get());
    if (progress_freq_ > 0) {
      displayProgress(
          static_cast<float>(chunk - first_doc) / static_cast<float>(last_doc - first_doc),
          &progress);
    }
  }
}

void IkCreatorImpl::addDocument(DcDocumentManager* docs, int chunk, TkWordPairHash* pairHash) {
  std::unique_ptr<DcDocument> doc(docs->documentNum(chunk));
  if (!doc) return;
  std::unique_ptr<FdStream> words(doc->words());
  int terms = 0;
  if (words) {
    WmLocalWord previous;
    WmLocalWord pair;
    int pos = 0;
    for (words->reset(); words->more(); words->next()) {
      const WmWord* word = static_cast<const WmWord*>(words->key());
      addTerm(word, chunk, pos);
      ++terms;
      if (pairHash != nullptr) {
        if (previous->valid()) {
          // The letter behind the hash keeps pairs apart from words.
          pairHash->hash(previous.word(), word, pair.word());
          const int letters = pair->num_letters();
          pair->letter(letters, '@');
          pair->num_letters(letters + 1);
          addTerm(pair.word(), chunk, pos);
        }
        previous = WmLocalWord(*word);
      }
      // A word that begins with a blank is a special term without a place in the
      // text: the next word takes its position.
      if (word->letter(0) != ' ') ++pos;
    }
  }
  totalWordCount_ += terms;
  logDocument(doc.get(), terms);
}

void IkCreatorImpl::logDocument(DcDocument* doc, int terms) {
  if (VandrelleLog::Logger() == nullptr) return;
  HeapAptr<char> name(doc->documentName());
  const char* shown = name ? name.get() : "";
  if (const DcAsciiDocument* text = DESCRIPTOR_CAST(DcAsciiDocument, doc)) {
    LOG(2, 2,
        "Indexed " << shown << ", " << text->numCharacters() << " bytes, " << terms << " terms");
  } else {
    LOG(2, 2, "Indexed " << shown << ", " << terms << " terms");
  }
}

void IkCreatorImpl::displayProgress(float fraction, float* progress) const {
  // A fraction of nothing known, as in a stage that read no documents, is infinite.
  if (!(*progress < fraction) || !std::isfinite(fraction)) return;
  char line[32];
  std::snprintf(line, sizeof line, "  %3.1f%%", static_cast<double>(*progress * 100));
  LOG(1, 1, line);
  float next;
  do {
    *progress += progress_freq_;
    next = *progress + progress_freq_;
    // A step too small to count would never end.
  } while (next < fraction && next > *progress);
}

// What compileIndex() has open, and what it adds up.
struct IkCreatorImpl::Compilation {
  IkDataFileCreator data;
  std::unique_ptr<KdFileCreator> keys;
  std::unique_ptr<IkIdfCreator> idfs;
  std::unique_ptr<StPosMapCreator> positionMap;
  IkProxCreator* positions = nullptr;  // owned by the merger
  StStoragePos positionsEnd;           // of the words compiled so far
  std::vector<int> row;
  std::vector<float> sums;
  std::vector<float> norms;
  int words = 0;
  std::int64_t occurrences = 0;
  float progress = 0;
};

void IkCreatorImpl::compileIndex(NameManager* name, IkMerger* merger) {
  if (info_.totalNumChunks < 0) {
    THROW(Ik, "An index of " << info_.totalNumChunks << " documents can't be compiled");
  }
  const std::size_t chunks = static_cast<std::size_t>(info_.totalNumChunks);
  Compilation files;
  files.data.create(name->suffix(".dat"), info_.bufferSize);
  files.keys.reset(KfKeyFileManager::KdCreate(name->suffix(nullptr), IkLocalWordTable::kChunkSize,
                                              kKdMappedPointers, IkLocalWordTable::kDataSize));
  if (!files.keys) THROW(Ik, "Couldn't create keyfile (NULL)");
  if (recordProximity_) {
    files.positions = new IkProxCreator(name->suffix(".prx"));
    merger->proxCreator(files.positions);
    files.positionMap =
        std::make_unique<StPosMapCreator>(name->suffix(".prx.map"), kPosMapInterval);
  } else {
    removePositions(*name);
  }
  files.idfs = std::make_unique<IkIdfCreator>(&info_, name->suffix(".idf"));
  LOG(1, 1, "Indexing, stage 2");

  files.row.resize(chunks);
  merger->row(files.row.data());
  merger->rowSize(info_.totalNumChunks);
  sim_.bind(&info_);
  if (createSumfile_) files.sums.resize(chunks);
  if (createNormfile_) files.norms.resize(chunks);
  info_.numDeletedChunks = merger->numDeleted();

  for (merger->reset(); merger->more(); merger->next()) compileWord(merger, &files);

  if (files.positionMap) {
    files.positionMap->add(files.positions->tell());
    // On disk before the header is written, which says that the index is whole.
    files.positions = nullptr;
    merger->proxCreator(nullptr);
  }
  if (createSumfile_) finishSums(&files.sums, name->suffix(".sum"));
  if (createNormfile_) finishNorms(files.norms, name->suffix(".norm"));
  files.data.flush();
  info_.numTerms = files.words;
}

void IkCreatorImpl::compileWord(IkMerger* merger, Compilation* files) {
  const int* row = files->row.data();
  float idf;
  std::int64_t freq;
  calculateIdf(*merger, row, &idf, &freq);
  if (freq == 0 || idf == 0.0f) {
    // The merger has copied the positions of a word that is dropped, too.
    if (files->positions != nullptr) files->positions->truncate(files->positionsEnd);
    return;
  }
  files->idfs->add(idf);
  calculateWeights(*merger, row, idf, files);

  unsigned char place[IkLocalWordTable::kDataSize];
  IkLocalWordTable::storePos(place, files->data.offset());
  files->keys->Add_Entry(merger->word(), place, sizeof place);
  if (files->positionMap) {
    files->positionsEnd = files->positions->tell();
    files->positionMap->add(files->positionsEnd);
  }

  if (merger->sparseSize() >= 0) {
    files->data.writeRow(reinterpret_cast<const IkDocumentInfo*>(row), merger->sparseSize(), idf);
  } else {
    files->data.writeRow(row, info_.totalNumChunks, idf);
  }
  files->occurrences += freq;
  if (progress_freq_ > 0) {
    displayProgress(static_cast<float>(files->occurrences) / static_cast<float>(totalWordCount_),
                    &files->progress);
  }
  ++files->words;
}

void IkCreatorImpl::calculateIdf(const IkMerger& merger, const int* row, float* idf,
                                 std::int64_t* freq) const {
  int df = 0;
  std::int64_t sum = 0;
  eachPair(merger, row, info_.totalNumChunks, [&](int, int tf) {
    ++df;
    sum += tf;
  });
  *freq = sum;
  *idf = df == 0 ? 0.0f : sim_.IDF(df);
}

void IkCreatorImpl::calculateWeights(const IkMerger& merger, const int* row, float idf,
                                     Compilation* files) const {
  const float squaredIdf = idf * idf;
  const WmWord* word = merger.word();
  float* sums = createSumfile_ ? files->sums.data() : nullptr;
  float* norms = createNormfile_ ? files->norms.data() : nullptr;
  eachPair(merger, row, info_.totalNumChunks, [&](int chunk, int tf) {
    // Squares of frequencies are integers; a frequency stays below 65,536.
    if (sums != nullptr) {
      sums[chunk] += static_cast<float>(static_cast<std::int64_t>(tf) * tf) * squaredIdf;
    }
    if (norms != nullptr) {
      IkSimilarity::NormIncrement(norms[chunk], static_cast<std::uint16_t>(tf), word);
    }
  });
}

void IkCreatorImpl::finishSums(std::vector<float>* sums, const std::string& filename) const {
  for (float& sum : *sums) {
    if (sum > 0) sum = std::sqrt(sum);
  }
  writeFloats(filename, *sums);
}

void IkCreatorImpl::writeFloats(const std::string& filename, const std::vector<float>& values) {
  writeFile(filename, bigEndian(values));
}

void IkCreatorImpl::finishNorms(const std::vector<float>& norms,
                                const std::string& filename) const {
  std::vector<unsigned char> bytes(norms.size());
  for (std::size_t i = 0; i < norms.size(); ++i) {
    bytes[i] = norms[i] > 0 ? sim_.Norm2Byte(norms[i]) : 0;
  }
  writeFile(filename, bytes);
  writeFloats(filename + ".raw", norms);
}

}  // namespace vandrelle
