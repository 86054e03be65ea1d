// A result: a lazily evaluated sparse vector over document numbers. Everything
// that a query can be made of is a node, and trees of nodes merge by asking each
// other for the next document.
#pragma once

#include <limits>

namespace vandrelle {

// A node is read by one consumer, in rising order of documents; its place in
// the reading is part of its state. It owns its children.
class PrParserNode {
 public:
  PrParserNode() = default;
  virtual ~PrParserNode() = default;
  PrParserNode(const PrParserNode&) = delete;
  PrParserNode& operator=(const PrParserNode&) = delete;

  // Finds the first document at or after `*doc` with a score other than zero.
  // 1: `*doc` and `*score` describe it; ask for `*doc` + 1 to go on. 0: there is
  // none; `*doc` is as it was and `*score` is undefined.
  virtual int next(int* doc, float* score) = 0;

  // The score of one document, 0 if the node does not hold it.
  float score(int doc);

  // Calls visit(int doc, float score) for each document until the end or until
  // `visit` answers false.
  template <class Visit>
  void forEach(Visit visit) {
    int doc = 0;
    float value = 0;
    while (next(&doc, &value)) {
      if (!visit(doc, value) || doc == std::numeric_limits<int>::max()) return;
      ++doc;
    }
  }
};

}  // namespace vandrelle
