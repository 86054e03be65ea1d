// How a search program shows answers: blocks of text for a reader, or lines for
// another program.
#pragma once

#include <string>
#include <vector>

#include "Query/QlSearcher.h"

namespace vandrelle {

class AnswerDisplay {
 public:
  // kPlain: a line a result, fields separated by tabs. kJson: an object a line, in
  // UTF-8. Neither has anything else on it.
  enum class Form { kBlocks, kPlain, kJson };

  // Writes to the standard output, with the words of a query in bold where that is a
  // terminal. `interactive` leaves the empty lines out of an answer, where one ends
  // it. Doesn't own the searcher, which is asked for what a document is called.
  AnswerDisplay(QlSearcher& searcher, Form form, bool interactive);

  // `seconds` is how long the answer took.
  void hits(const QlAnswer& answer, double seconds);
  void groups(QlGatherResult& groups, int matches, double seconds);
  void words(const std::vector<QlWeightedWord>& words);

 private:
  void hit(int rank, const QlHit& hit, const char* indent);
  void jsonHit(int rank, const QlHit& hit);
  void group(QlGatherResult& groups, int number);
  void jsonGroup(int number, int documents, const std::vector<QlWeightedWord>& words,
                 const std::vector<QlHit>& nearest);
  std::string marked(const std::string& text) const;
  void closingLine(int matches, double seconds) const;

  QlSearcher& searcher_;
  Form form_;
  const char* separator_;  // between the blocks of an answer
  bool bold_;
};

}  // namespace vandrelle
