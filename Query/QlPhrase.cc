#include "Query/QlPhrase.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>

#include "Index/IkDataFileBinder.h"
#include "Index/IkException.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkLocalRetriever.h"
#include "Index/IkProxBinder.h"
#include "Index/IkRetrieverInput.h"
#include "Index/IkWordTable.h"

namespace vandrelle {

// A word of the phrase and all its places in it, from 0.
struct QlPhrase::Member {
  WmMagicWord word;
  std::vector<uint32> offsets;
  uint32 number;     // in the word table
  StStoragePos row;  // in the row data file
  uint32 rowBytes;
};

// Where the phrase may begin, by document: those of the document at `i` of the list
// are starts[begins[i]] to starts[begins[i + 1] - 1], rising.
struct QlPhrase::Places {
  std::vector<int> documents;
  std::vector<std::size_t> begins{0};
  std::vector<uint32> starts;

  // Ends the starts of a document, which counts only if it has any.
  void close(int document) {
    if (starts.size() == begins.back()) return;
    documents.push_back(document);
    begins.push_back(starts.size());
  }
};

namespace {

// Keeps those of `starts`, from `from` on, at which a word stands `offset` further on.
// `positions` are the word's, rising like the starts.
void keepStarts(std::vector<uint32>& starts, std::size_t from, const std::vector<uint32>& positions,
                uint32 offset) {
  auto position = positions.begin();
  auto kept = starts.begin() + static_cast<std::ptrdiff_t>(from);
  for (auto start = kept; start != starts.end(); ++start) {
    const std::uint64_t wanted = std::uint64_t{*start} + offset;
    while (position != positions.end() && *position < wanted) ++position;
    if (position == positions.end()) break;
    if (*position == wanted) *kept++ = *start;
  }
  starts.erase(kept, starts.end());
}

}  // namespace

QlPhrase::QlPhrase(IkLocalIndexBinder* binder) : binder_(binder) {}

QlPhrase::~QlPhrase() = default;

bool QlPhrase::matches(const WmWord& word) const {
  return std::any_of(words_.begin(), words_.end(),
                     [&](const WmMagicWord& known) { return known == word; });
}

// Empty when the index lacks a word.
std::vector<QlPhrase::Member> QlPhrase::membersOf(const std::vector<WmMagicWord>& words) const {
  IkDataFileBinder& rows = *binder_->indexData(0, 1);
  std::vector<Member> members;
  for (uint32 offset = 0; offset < words.size(); ++offset) {
    const WmMagicWord& word = words[offset];
    const auto known = std::find_if(members.begin(), members.end(),
                                    [&](const Member& member) { return member.word == word; });
    if (known != members.end()) {
      known->offsets.push_back(offset);
      continue;
    }
    Member member{word, {offset}, 0, StStoragePos(), 0};
    const int number = binder_->wordTable()->wordNum(word.word());
    if (number < 0 || !binder_->wordTable()->lookup(word.word(), member.row)) return {};
    member.number = static_cast<uint32>(number);
    seekRow(member);
    member.rowBytes = rows.dataSize();
    members.push_back(std::move(member));
  }
  std::sort(members.begin(), members.end(),
            [](const Member& a, const Member& b) { return a.rowBytes < b.rowBytes; });
  return members;
}

// A position behind the rows would leave the binder on the row of another word.
void QlPhrase::seekRow(const Member& member) const {
  IkDataFileBinder& rows = *binder_->indexData(0, 1);
  rows.seek(member.row);
  if (!rows.more() || rows.tell() != member.row) {
    THROW(Ik, "The word table leads behind the rows for '" << *member.word << "'");
  }
}

// The live documents in which all words are.
std::vector<int> QlPhrase::intersect(const std::vector<Member>& members) const {
  IkDataFileBinder& rows = *binder_->indexData(0, 1);
  const int numDocuments = binder_->info()->totalNumChunks;
  std::vector<int> documents;
  for (std::size_t i = 0; i < members.size(); ++i) {
    std::vector<int> both;
    std::size_t next = 0;
    int last = -1;
    seekRow(members[i]);
    rows.unpackPairs([&](int document, int) {
      if (document <= last || document >= numDocuments) return;  // damage
      last = document;
      while (next < documents.size() && documents[next] < document) ++next;
      if (i == 0 || (next < documents.size() && documents[next] == document)) {
        both.push_back(document);
      }
    });
    documents.swap(both);
    if (documents.empty()) break;
  }
  return documents;
}

// Keeps the places that have the word where the phrase has it; the first word makes
// them.
void QlPhrase::keepPlaces(const Member& member, bool first, Places& places) const {
  const std::unique_ptr<IkProxBuffer> buffer(binder_->positions()->getBuffer(member.number));
  const std::vector<int>& documents = places.documents;
  Places kept;
  std::vector<uint32> positions;
  std::size_t next = 0;
  std::uint64_t passedOver = 0;
  seekRow(member);
  // Deleted documents have positions, too.
  binder_->indexData(0, 1)->unpackAllPairs([&](int document, int frequency) {
    while (next < documents.size() && documents[next] < document) ++next;
    if (next == documents.size() || documents[next] != document) {
      passedOver += static_cast<std::uint64_t>(frequency);
      return;
    }
    buffer->skip(std::exchange(passedOver, 0));
    buffer->reset();
    positions.resize(static_cast<std::size_t>(frequency));
    for (uint32& position : positions) position = buffer->get();

    const std::size_t from = kept.starts.size();
    if (first) {
      for (const uint32 position : positions) {
        if (position >= member.offsets[0]) kept.starts.push_back(position - member.offsets[0]);
      }
    } else {
      kept.starts.insert(
          kept.starts.end(),
          places.starts.begin() + static_cast<std::ptrdiff_t>(places.begins[next]),
          places.starts.begin() + static_cast<std::ptrdiff_t>(places.begins[next + 1]));
    }
    for (const uint32 offset : member.offsets) keepStarts(kept.starts, from, positions, offset);
    kept.close(document);
    ++next;
  });
  places = std::move(kept);
}

std::vector<int> QlPhrase::documents(const std::vector<WmMagicWord>& words) {
  if (words.empty() || binder_->info()->numTerms == 0) return {};
  const std::vector<Member> members = membersOf(words);
  Places places;
  places.documents = intersect(members);
  if (words.size() == 1) return places.documents;
  for (const Member& member : members) {
    if (places.documents.empty()) break;
    keepPlaces(member, &member == members.data(), places);
  }
  return places.documents;
}

std::vector<PrTuple> QlPhrase::retrieve(const std::vector<WmMagicWord>& words, int count,
                                        int* matches) {
  words_.insert(words_.end(), words.begin(), words.end());
  const std::vector<int> found = documents(words);
  *matches = static_cast<int>(found.size());
  if (found.empty() || count <= 0) return {};
  return ranked(words, found, std::min(found.size(), static_cast<std::size_t>(count)));
}

std::vector<PrTuple> QlPhrase::ranked(const std::vector<WmMagicWord>& words,
                                      const std::vector<int>& found, std::size_t count) {
  auto tuples = std::make_unique<PrTuple[]>(found.size());
  for (std::size_t i = 0; i < found.size(); ++i) tuples[i] = {found[i], 1.0f};
  found_ = std::make_unique<PrSparseReadonly>(static_cast<int>(found.size()), std::move(tuples));

  input_ = std::make_unique<IkRetrieverInput>();
  for (const WmMagicWord& word : words) input_->add(word.word(), 1.0f);
  IkLocalRetriever* const retriever = binder_->localRetriever();
  retriever->maxDocs(0);  // an earlier query may have left a bound
  retriever->constraint(found_.get());
  const std::unique_ptr<PrSparseReadonly> scored(
      static_cast<PrSparseReadonly*>(retriever->retrieve(input_.get(), static_cast<int>(count))));
  retriever->constraint(nullptr);

  scored->sortByScore();
  std::vector<PrTuple> best;
  std::set<int> listed;
  for (int i = 0; i < scored->numTuples() && scored->docScore(i) > 0; ++i) {
    best.push_back({scored->docNum(i), scored->docScore(i)});
    listed.insert(scored->docNum(i));
  }
  // A document of many megabytes has a norm of 0, and so no score.
  for (std::size_t i = 0; i < found.size() && best.size() < count; ++i) {
    if (listed.count(found[i]) == 0) best.push_back({found[i], 0.0f});
  }
  return best;
}

}  // namespace vandrelle
