// A growable array whose elements stay where they are: a map from the index to the
// element. Pointers to elements survive pushes.
#pragma once

#include <utility>

#include "Fun/FdMap.h"

namespace vandrelle {

template <typename T>
class FdVector {
 public:
  void push(const T& element) { map_.insert(map_.numElements(), element); }

  // The last element; a vector without elements gives a T{}.
  T top() const {
    const T* last = (*this)[numElements() - 1];
    return last != nullptr ? *last : T{};
  }
  // Takes the last element off.
  T pop() {
    T last{};
    map_.remove(numElements() - 1, last);
    return last;
  }

  // The element in place, or null beyond the end.
  T* operator[](int index) { return map_.find(index); }
  const T* operator[](int index) const { return map_.find(index); }

  bool empty() const { return numElements() == 0; }
  int numElements() const { return map_.numElements(); }
  void removeAll() { map_.removeAll(); }

 private:
  FdSimpleMap<int, T> map_;
};

}  // namespace vandrelle
