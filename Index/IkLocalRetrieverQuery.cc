// From the input to the query vector and its rows.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <iostream>
#include <limits>

#include "Index/IkException.h"
#include "Index/IkLocalRetriever.h"
#include "Index/IkWordTable.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

// Rows with fewer documents that belong to one virtual term only are merged into
// one row when there are this many of them.
constexpr int kRareDocuments = 200;
constexpr std::size_t kCondensedRows = 10;
// Scores take frequencies as 16 bits.
constexpr int kMaxScoredFrequency = 0xFFFF;

}  // namespace

void IkLocalRetriever::preprocessQuery(IkRetrieverInput* input) {
  query_.clear();
  for (int i = 0; i < input->numTerms(); ++i) {
    query_.terms.emplace_back();
    query_.terms.back().data = input->term(i);
  }
  assignSlots(*input);
  query_.queryInfo.resize(query_.slotTerms.size());
  for (IkRetrieverQuery::Term& term : query_.terms) {
    if (term.slot < 0) continue;
    IkQueryInfo& info = query_.queryInfo[static_cast<std::size_t>(term.slot)];
    if (term.data->elem != nullptr) {
      bindComposite(term, info);
      query_.composites.push_back(term.slot);
    } else if (term.hasRow) {
      info.offset = query_.rowOf(term);
      info.realidf = term.unpacker.idf();
    }
  }
  // Now the table of rows stays where it is.
  for (IkQueryInfo& info : query_.queryInfo) {
    if (info.offset >= 0)
      info.unpacker = &query_.unpackTable[static_cast<std::size_t>(info.offset)];
  }
  normalizeQuery();
  copyOperations(*input);
}

// A slot for every term that an operation names and for every one with weight; a row
// for every word.
void IkLocalRetriever::assignSlots(IkRetrieverInput& input) {
  const auto takeSlot = [this](int number) {
    IkRetrieverQuery::Term& term = query_.terms[static_cast<std::size_t>(number)];
    if (term.slot >= 0) return;
    term.slot = static_cast<int>(query_.slotTerms.size());
    query_.slotTerms.push_back(number);
  };
  for (int i = 0; i < input.numOperations(); ++i) {
    const IkRetrieverInput::Operation operation = input.operation(i);
    const bool known = operation.operand >= 0 && operation.operand < input.numTerms();
    if (operation.type == IkRetrieverInput::kPushTerm && known) takeSlot(operation.operand);
  }
  for (int i = 0; i < input.numTerms(); ++i) {
    IkRetrieverQuery::Term& term = query_.terms[static_cast<std::size_t>(i)];
    const IkRetrieverInput::TermData& data = *term.data;
    if (data.alwaysTrue) continue;
    if (data.elem != nullptr) {
      for (int j = 0; j < data.elem->numElements(); ++j) {
        const int member = *(*data.elem)[j];
        if (member < 0 || member >= input.numTerms()) continue;
        ++query_.terms[static_cast<std::size_t>(member)].useCount;
      }
    } else if (!data.word.valid()) {
      LOG(0, 0, "Nonvirtual term is invalid");
      continue;
    } else {
      setUnpacker(data.word.word(), term.unpacker, query_.buffers);
      term.hasRow = true;
      if (data.idf > 0 || data.weight > 0 || term.slot >= 0) ++term.useCount;
    }
    if (data.idf > 0 || data.weight > 0) takeSlot(i);
  }
}

void IkLocalRetriever::setUnpacker(const WmWord* word, IkUnpacker& unpacker,
                                   IkRowBuffers& buffers) {
  unpacker.documents(numDocuments());
  StStoragePos position;
  if (wordTable_->lookup(word, position)) {
    indexData_->seek(position);
    // A damaged word table may lead past the end, where seek() stays.
    if (indexData_->tell() == position) {
      indexData_->loadRow();
      const int size = static_cast<int>(indexData_->dataSize());
      unpacker.idf(indexData_->scale());
      unpacker.set(buffers.keepRow(indexData_), size);
      return;
    }
  }
  unpacker.idf(sim_.idfCache[1]);
}

void IkLocalRetriever::bindComposite(const IkRetrieverQuery::Term& term, IkQueryInfo& info) {
  query_.components.clear();
  query_.condensed.clear();
  long long totalFreq = 0;
  const FdVector<int>& members = *term.data->elem;
  for (int i = 0; i < members.numElements(); ++i) {
    const int number = *members[i];
    if (number < 0 || number >= static_cast<int>(query_.terms.size())) continue;
    IkRetrieverQuery::Term& member = query_.terms[static_cast<std::size_t>(number)];
    if (!member.hasRow || member.componentOf == term.slot) continue;
    member.componentOf = term.slot;
    const int df = sim_.InverseIDF(member.unpacker.idf());
    totalFreq += df;
    if (member.useCount == 1 && df < kRareDocuments) {
      query_.condensed.push_back(number);
    } else {
      query_.components.push_back(query_.rowOf(member));
    }
  }
  if (query_.condensed.size() < kCondensedRows) {
    for (const int number : query_.condensed) {
      query_.components.push_back(query_.rowOf(query_.terms[static_cast<std::size_t>(number)]));
    }
  } else {
    std::cerr << "Condensing! (" << query_.condensed.size() << ")\n";
    query_.components.push_back(query_.numUnpackers());
    query_.unpackTable.push_back(makeCondensedUnpacker(query_.condensed, query_.buffers));
  }
  query_.components.push_back(-1);
  info.components = std::make_unique<int[]>(query_.components.size());
  std::copy(query_.components.begin(), query_.components.end(), info.components.get());
  constexpr long long kMost = std::numeric_limits<int>::max();
  info.realidf = sim_.IDF(static_cast<int>(std::clamp(totalFreq, 0LL, kMost)));
}

// The merged row has its pairs in the absolute form, so that no document has to be
// packed again.
IkUnpacker IkLocalRetriever::makeCondensedUnpacker(const std::vector<int>& terms,
                                                   IkRowBuffers& buffers) {
  std::vector<IkRetrieverDocfreq>& pairs = query_.docfreqs;
  pairs.clear();
  for (const int number : terms) {
    IkUnpacker row = query_.terms[static_cast<std::size_t>(number)].unpacker;
    for (; row.more(); row.read()) pairs.push_back({row.docNum(), row.docFreq()});
  }
  if (pairs.size() > std::numeric_limits<int>::max() / sizeof(IkRetrieverDocfreq)) {
    THROW(Ik, "The rare words of a virtual term have " << pairs.size() << " documents");
  }
  std::sort(pairs.begin(), pairs.end(), sortDocfreq);
  std::size_t count = 0;
  for (const IkRetrieverDocfreq& pair : pairs) {
    if (count > 0 && pairs[count - 1].doc == pair.doc) {
      pairs[count - 1].freq = std::min(pairs[count - 1].freq + pair.freq, kMaxScoredFrequency);
    } else {
      pairs[count++] = pair;
    }
  }

  const std::size_t size = count * sizeof(IkRetrieverDocfreq);
  unsigned char* const bytes = buffers.allocate(size);
  if (size != 0) std::memcpy(bytes, pairs.data(), size);
  IkUnpacker merged;
  merged.documents(numDocuments());
  merged.set(bytes, static_cast<int>(size), IkUnpacker::kAbsolute);
  merged.idf(sim_.IDF(static_cast<int>(count)));
  return merged;
}

// A vector of length 1. What is no finite number or has no finite square, as the infinite
// idf of a virtual term without documents, must not reach the scores of other terms.
void IkLocalRetriever::normalizeQuery() {
  float sum = 0;
  for (std::size_t slot = 0; slot < query_.queryInfo.size(); ++slot) {
    IkQueryInfo& info = query_.queryInfo[slot];
    const auto number = static_cast<std::size_t>(query_.slotTerms[slot]);
    const IkRetrieverInput::TermData& data = *query_.terms[number].data;
    info.value = data.weight;
    info.idf = data.idf != 0 ? data.idf : info.realidf;
    info.value *= info.idf;
    if (!std::isfinite(info.value * info.value)) info.value = info.idf = 0;
    if (info.value != 0) sum += info.value * info.value;
  }
  const float length = std::sqrt(sum);
  query_.hasDirection = length > 0 && std::isfinite(length);
  if (!query_.hasDirection) return;
  for (IkQueryInfo& info : query_.queryInfo) info.value /= length;
}

void IkLocalRetriever::copyOperations(IkRetrieverInput& input) {
  query_.ops.reserve(static_cast<std::size_t>(input.numOperations()) + 1);
  for (int i = 0; i < input.numOperations(); ++i) {
    IkRetrieverInput::Operation operation = input.operation(i);
    if (operation.type == IkRetrieverInput::kPushTerm) {
      if (operation.operand < 0 || operation.operand >= input.numTerms()) {
        operation.operand = -1;
      } else {
        const auto& term = query_.terms[static_cast<std::size_t>(operation.operand)];
        operation.operand = term.slot;
        if (term.data->alwaysTrue) {
          operation.type = IkRetrieverInput::kPushTrue;
        } else if (term.data->virt) {
          query_.virtualOperands = true;
        }
      }
    }
    query_.ops.push_back(operation);
  }
}

}  // namespace vandrelle
