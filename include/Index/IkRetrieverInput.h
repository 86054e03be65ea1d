// A query as the retriever sees it: numbered, weighted terms, and a list of
// boolean operations over their numbers in postfix order. A term is a word, or a
// virtual term: one dimension of the query made of several words, its members,
// whose frequencies add up in each document. The query language and programs
// fill it.
#pragma once

#include <iosfwd>
#include <memory>

#include "Fun/FdBag.h"
#include "Fun/FdMap.h"
#include "Fun/FdStream.h"
#include "Fun/FdVector.h"
#include "MagicWord.h"

namespace vandrelle {

class IkRetrieverInput {
 public:
  struct TermData {
    WmSmartWord word;  // invalid for a virtual and for a true term
    int number = 0;
    float weight = 0;
    float idf = 0;                        // forced by the caller; 0: the index's
    std::unique_ptr<FdVector<int>> elem;  // numbers of the members, for a virtual term
    unsigned virt : 1 = 0;                // no plain word: virtual, true or a member
    unsigned alwaysTrue : 1 = 0;          // holds in every document, has no row
  };

  enum OperationType { kPushTrue = 1, kPushTerm = 2, kAnd = 3, kOr = 4, kNot = 5 };
  struct Operation {
    int type = 0;     // an OperationType; others do nothing
    int operand = 0;  // a term number, for kPushTerm
  };

  IkRetrieverInput() = default;
  ~IkRetrieverInput() { removeAll(); }
  IkRetrieverInput(const IkRetrieverInput&) = delete;
  IkRetrieverInput& operator=(const IkRetrieverInput&) = delete;

  // Terms stay owned by the input, at their places until removeAll().
  //
  // The term of a word, made if need be: the next number, weight 0.
  TermData* term(const WmWord* word);
  TermData* term(const WmWord& word) { return term(&word); }
  // The term with a number. An unknown number gets a record without a word, which
  // a term that is given this number later takes over.
  TermData* term(int number);
  // A term of members to be added, and one that holds everywhere.
  TermData* newVirtualTerm();
  TermData* newTrueTerm();

  // Adds to the weight of a word's term.
  void add(const WmWord* word, float weight) { term(word)->weight += weight; }
  // The words of another input with their weights, in the order of their numbers;
  // the members of its virtual terms become words like others.
  void add(IkRetrieverInput& other);
  // Keys are words, data their weights as floats; 1 where there are none.
  void add(FdStream* words);
  // Makes `word` a member of the virtual term `id`: a term of its own besides that
  // of the same word outside. Nothing happens if `id` isn't a virtual term. A member
  // with a weight above 0 is a dimension of the query as well.
  void addVirtual(int id, const WmWord* word, float weight);
  void idf(const WmWord* word, float value) { term(word)->idf = value; }

  // A bag of the words outside of virtual terms, each with its weight as a float.
  // The caller owns it.
  FdBag* weightedTerms();

  void pushOperation(Operation operation) { opstack_.push(operation); }
  // Type 0 for a place that isn't there.
  Operation operation(int i) const {
    const Operation* found = opstack_[i];
    return found != nullptr ? *found : Operation{};
  }
  int numOperations() const { return opstack_.numElements(); }

  // Documents that match, counted or estimated by the last retrieval.
  int matches() const { return matches_; }
  void matches(int count) { matches_ = count; }

  int numTerms() const { return numterms_; }
  void removeAll();

  // For debugging: a line a term, then the operations.
  void dump(std::ostream& os) const;

 private:
  TermData* newTerm();

  int numterms_ = 0;
  int matches_ = 0;
  FdSimpleMap<int, TermData*> bynum_;           // owns all terms
  FdSimpleMap<WmMagicWord, TermData*> byword_;  // those of words outside of virtual terms
  FdVector<Operation> opstack_;
};

// Takes the words of a query text, each for weight 1.
class IkRetrieverParserFilter {
 public:
  // Doesn't own `input`.
  explicit IkRetrieverParserFilter(IkRetrieverInput* input) : input_(input) {}
  virtual ~IkRetrieverParserFilter() = default;

  virtual void add(const WmWord* word) { input_->add(word, 1.0f); }
  virtual void done() {}

 protected:
  IkRetrieverInput* input_;
};

}  // namespace vandrelle
