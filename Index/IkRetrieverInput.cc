#include "Index/IkRetrieverInput.h"

#include <algorithm>
#include <cstring>
#include <ostream>

#include "Fun/Fd.h"

namespace vandrelle {

IkRetrieverInput::TermData* IkRetrieverInput::term(const WmWord* word) {
  const WmMagicWord key(word);
  if (TermData** found = byword_.find(key)) return *found;
  TermData* const term = newTerm();
  term->word = key;
  byword_.insert(key, term);
  return term;
}

IkRetrieverInput::TermData* IkRetrieverInput::term(int number) {
  if (TermData** found = bynum_.find(number)) return *found;
  auto* const term = new TermData;
  term->number = number;
  bynum_.insert(number, term);
  return term;
}

IkRetrieverInput::TermData* IkRetrieverInput::newTerm() { return term(numterms_++); }

IkRetrieverInput::TermData* IkRetrieverInput::newVirtualTerm() {
  TermData* const term = newTerm();
  term->virt = 1;
  term->elem = std::make_unique<FdVector<int>>();
  return term;
}

IkRetrieverInput::TermData* IkRetrieverInput::newTrueTerm() {
  TermData* const term = newTerm();
  term->virt = 1;
  term->alwaysTrue = 1;
  return term;
}

void IkRetrieverInput::add(IkRetrieverInput& other) {
  const int count = other.numterms_;
  for (int i = 0; i < count; ++i) {
    const TermData* const term = other.term(i);
    if (term->word.valid()) add(term->word.word(), term->weight);
  }
}

void IkRetrieverInput::add(FdStream* words) {
  for (words->reset(); words->more(); words->next()) {
    float weight = 1.0f;
    int size = static_cast<int>(sizeof weight);
    if (words->dataSize() >= size) words->data(&weight, &size);
    add(static_cast<const WmWord*>(words->key()), weight);
  }
}

void IkRetrieverInput::addVirtual(int id, const WmWord* word, float weight) {
  TermData** const found = bynum_.find(id);
  if (found == nullptr || (*found)->elem == nullptr) return;
  TermData* const member = newTerm();
  member->word = word;
  member->weight = weight;
  member->virt = 1;
  (*found)->elem->push(member->number);
}

FdBag* IkRetrieverInput::weightedTerms() {
  FdBag* const bag = Fd::Queue();
  for (int i = 0; i < numterms_; ++i) {
    const TermData* const term = this->term(i);
    const WmWord* const word = term->word.word();
    if (term->virt != 0 || word == nullptr) continue;
    bag->insert(word, word->num_bytes(), &term->weight, static_cast<int>(sizeof term->weight));
  }
  return bag;
}

void IkRetrieverInput::removeAll() {
  for (auto i = bynum_.iterator(); i.more(); i.next()) delete i.data();
  bynum_.removeAll();
  byword_.removeAll();
  opstack_.removeAll();
  numterms_ = 0;
  matches_ = 0;
}

void IkRetrieverInput::dump(std::ostream& os) const {
  for (int i = 0; i < numterms_; ++i) {
    const TermData* const term = *bynum_.find(i);
    os << term->number << ": ";
    if (term->word.valid()) os << *term->word;
    if (term->alwaysTrue) os << "(true)";
    for (int j = 0; term->elem != nullptr && j < term->elem->numElements(); ++j) {
      os << (j == 0 ? "(" : " ") << *(*term->elem)[j]
         << (j + 1 == term->elem->numElements() ? ")" : "");
    }
    os << " weight " << term->weight;
    if (term->idf != 0) os << " idf " << term->idf;
    if (term->virt) os << " virtual";
    os << '\n';
  }
  for (int i = 0; i < numOperations(); ++i) {
    os << "operation " << operation(i).type << " " << operation(i).operand << '\n';
  }
  os << matches_ << " matches\n";
}

}  // namespace vandrelle
