// A list of pairs in order of insertion: inserted at the tail, read from the head.
#pragma once

#include "Fun/FdStack.h"

namespace vandrelle {

class FdQueue : public FdStack {
 public:
  void insertPair(FdPair* pair) override;

 protected:
  void fixupTail(FdPair* previous, FdPair* pair) override;

 private:
  FdPair* tail_ = nullptr;
};

}  // namespace vandrelle
