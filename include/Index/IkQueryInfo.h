// The retriever's working form of a term: a dimension of the query vector.
#pragma once

#include <memory>

namespace vandrelle {

class IkUnpacker;

struct IkQueryInfo {
  int offset = -1;    // number of the row, -1 for a composite
  float value = 0;    // weight times idf, of the query vector of length 1
  float idf = 0;      // the idf used
  float realidf = 0;  // the idf of the index
  IkUnpacker* unpacker = nullptr;
  // Of a composite, which stands for a virtual term: the numbers of its rows, ending
  // in -1, and the sum of their frequencies in the current document.
  std::unique_ptr<int[]> components;
  int freq = 0;
};

}  // namespace vandrelle
