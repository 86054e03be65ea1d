#include "Index/IkTranspose.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>
#include <numbers>
#include <vector>

#include "Index/IkException.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkTransposeCache.h"
#include "Index/IkTransposeLoader.h"
#include "Parser/PrSparseNodeImpl.h"

namespace vandrelle {

namespace {

using Entry = std::array<unsigned char, IkTranspose::kEntryBytes>;
static_assert(sizeof(Entry) == IkTranspose::kEntryBytes);

Entry* entries(unsigned char* digest) { return reinterpret_cast<Entry*>(digest); }

template <int (*Compare)(const unsigned char*, const unsigned char*)>
void sortEntries(unsigned char* digest, int count) {
  std::sort(entries(digest), entries(digest) + count,
            [](const Entry& a, const Entry& b) { return Compare(a.data(), b.data()) < 0; });
}

// The replace-the-lowest rule; false if the word is turned away.
bool replaceLowest(unsigned char* digest, int count, int wordnum, std::uint16_t value) {
  unsigned char* lowest = nullptr;
  std::uint16_t minimum = value;
  for (int i = 0; i < count; ++i) {
    unsigned char* entry = digest + i * IkTranspose::kEntryBytes;
    if (IkTranspose::rawValue(entry) < minimum) {
      minimum = IkTranspose::rawValue(entry);
      lowest = entry;
    }
  }
  if (lowest == nullptr) return false;
  IkTranspose::rawNum(lowest, wordnum);
  IkTranspose::rawValue(lowest, value);
  return true;
}

IkTransposeWords* makeWords(int count, void* place) {
  const std::size_t bytes = static_cast<std::size_t>(IkTransposeWords::size(count));
  if (place == nullptr) place = ::operator new(bytes);
  std::memset(place, 0, bytes);
  return new (place) IkTransposeWords(count);
}

}  // namespace

IkTranspose::IkTranspose() = default;

IkTranspose::IkTranspose(int numDocs, int digestSize)
    : numDocs_(numDocs), digestSize_(digestSize) {}

IkTranspose::~IkTranspose() = default;

void IkTranspose::requireSizes() const {
  if (numDocs_ == 0 && digestSize_ == 0) THROW(IkTranspose, "Transposition is uninitialized");
}

void IkTranspose::map(const char* filename) {
  requireSizes();
  if (cache_) THROW(IkTranspose, "Why map when you've already cached?");
  map_ = std::make_unique<SysToolsMapObject>(filename);
  const std::int64_t needed = std::int64_t{numDocs_} * digestSize_ * kEntryBytes;
  if (map_->len() < needed) {
    THROW(IkTranspose, "The file '" << filename << "' ends before its last digest");
  }
  data_ = static_cast<unsigned char*>(map_->addr());
}

void IkTranspose::cache(const char* filename, int cachesize) {
  requireSizes();
  if (data_ != nullptr) THROW(IkTranspose, "Why cache when you've already mapped?");
  externalCache(new IkTransposeLoaderFile(filename, digestSize_, 0, 0), cachesize);
}

void IkTranspose::dynamicCache(IkLocalIndexBinder* index, DcDocumentManager* docmgr,
                               int cachesize) {
  requireSizes();
  if (data_ != nullptr || cache_) {
    THROW(IkTranspose, "Can't make dynamicCache: Already mapping or caching");
  }
  externalCache(
      new IkTransposeLoaderFake(docmgr, index->wordTable(), index->indexData(0, 0), digestSize_),
      cachesize);
}

void IkTranspose::externalCache(IkTransposeLoader* loader, int cachesize) {
  requireSizes();
  cache_.reset();
  loader_.reset(loader);
  memory_.reset();
  map_.reset();
  data_ = nullptr;
  cache_ = std::make_unique<IkTransposeCache>(cachesize, digestSize_, loader);
}

unsigned char* IkTranspose::digest(int doc, int lock) {
  if (doc < 0 || doc >= numDocs_) THROW(IkTranspose, "There is no digest of document " << doc);
  if (cache_) return cache_->entry(doc, lock);
  if (data_ == nullptr) THROW(IkTranspose, "Transposition is uninitialized");
  return data_ +
         static_cast<std::size_t>(doc) * static_cast<std::size_t>(digestSize_) * kEntryBytes;
}

void IkTranspose::touched(int doc) {
  if (cache_) cache_->dirty(doc);
}

unsigned char* IkTranspose::changeable(int doc) {
  if (map_) THROW(IkTranspose, "Digests of a mapped file can't be changed");
  return digest(doc);
}

void IkTranspose::insert(int doc, int wordnum, std::uint16_t wordscore) {
  if (replaceLowest(changeable(doc), digestSize_, wordnum, wordscore)) touched(doc);
}

int IkTranspose::CompareByWord(const unsigned char* a, const unsigned char* b) {
  if (rawNum(a) != rawNum(b)) return rawNum(a) < rawNum(b) ? -1 : 1;
  return rawValue(a) - rawValue(b);
}

int IkTranspose::CompareByValue(const unsigned char* a, const unsigned char* b) {
  if (rawValue(a) != rawValue(b)) return rawValue(b) - rawValue(a);
  return rawNum(a) == rawNum(b) ? 0 : rawNum(a) < rawNum(b) ? -1 : 1;
}

void IkTranspose::sortByWord(int doc) {
  sortEntries<CompareByWord>(changeable(doc), digestSize_);
  touched(doc);
}

void IkTranspose::sortByScore(int doc) {
  sortEntries<CompareByValue>(changeable(doc), digestSize_);
  touched(doc);
}

float IkTranspose::dotProduct(int doc1, int doc2) {
  // The first line must not be evicted while the second is fetched. A line that
  // was there before isn't locked by asking for it.
  const unsigned char* first = digest(doc1, 1);
  if (cache_) cache_->locked(doc1, 1);
  const unsigned char* second = digest(doc2, 1);
  float total = 0;
  int i = 0;
  int j = 0;
  while (i < digestSize_ && j < digestSize_) {
    const unsigned char* a = first + i * kEntryBytes;
    const unsigned char* b = second + j * kEntryBytes;
    if (rawNum(a) == rawNum(b)) total += rawScore(a) * rawScore(b);
    if (rawNum(a) < rawNum(b)) {
      ++i;
    } else {
      ++j;
    }
  }
  if (cache_) {
    cache_->locked(doc1, 0);
    cache_->locked(doc2, 0);
  }
  if (total > 0) {
    const double cosine = std::min(static_cast<double>(total), 1.0);
    total = static_cast<float>(1 - 2 * std::acos(cosine) / std::numbers::pi);
  }
  return total;
}

void IkTranspose::similar(int which, PrSparseNode* node) {
  for (int doc = 0; doc < numDocs_; ++doc) {
    if (doc != which) node->add(doc, dotProduct(which, doc));
  }
}

PrSparseNode* IkTranspose::similar(int which, int num) {
  auto node = std::make_unique<PrSparseNodeImpl>(num);
  similar(which, node.get());
  node->sort();
  return node.release();
}

IkTransposeWords* IkTranspose::importantWords(int doc, int numWords, void* place) {
  const int count = std::clamp(numWords, 0, digestSize_);
  IkTransposeWords* words = makeWords(count, place);
  const unsigned char* all = digest(doc);
  for (int i = 0; i < digestSize_ && count > 0; ++i) {
    const unsigned char* entry = all + i * kEntryBytes;
    replaceLowest(words->entry(0), count, rawNum(entry), rawValue(entry));
  }
  sortEntries<CompareByValue>(words->entry(0), count);
  return words;
}

IkTransposeWords* IkTranspose::allWords(int doc, void* place) {
  IkTransposeWords* words = makeWords(digestSize_, place);
  std::memcpy(words->entry(0), digest(doc), static_cast<std::size_t>(digestSize_) * kEntryBytes);
  sortEntries<CompareByValue>(words->entry(0), digestSize_);
  return words;
}

}  // namespace vandrelle
