// What a node answered last, kept by nodes that may have to search for it.
//
// A parent often asks again from inside of the gap that was just searched: a node
// of all documents beside one of few asks for each document. Each level would
// search such a gap anew for each question, and the costs of nested nodes would
// multiply.
#pragma once

#include <limits>

namespace vandrelle {

class PrLastAnswer {
 public:
  // As PrParserNode::next(), by `search`, which has the same arguments, or from
  // memory. The very same question is searched again.
  template <class Search>
  int next(int* doc, float* score, Search search) {
    if (*doc > from_ && *doc <= to_) {
      if (!found_) return 0;
      *doc = to_;
      *score = score_;
      return 1;
    }
    from_ = *doc;
    found_ = search(doc, score) != 0;
    to_ = found_ ? *doc : std::numeric_limits<int>::max();
    score_ = *score;
    return found_ ? 1 : 0;
  }

  // To be called when the node changes.
  void forget() { to_ = std::numeric_limits<int>::min(); }

 private:
  int from_ = 0;  // from_ to to_ were searched; to_ is the answer, if found_
  int to_ = std::numeric_limits<int>::min();
  bool found_ = false;
  float score_ = 0;
};

}  // namespace vandrelle
