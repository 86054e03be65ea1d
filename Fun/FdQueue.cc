#include "Fun/FdQueue.h"

namespace vandrelle {

void FdQueue::insertPair(FdPair* pair) {
  pair->next(nullptr);
  if (tail_ == nullptr) {
    head_ = pair;
  } else {
    tail_->next(pair);
  }
  tail_ = pair;
}

void FdQueue::fixupTail(FdPair* previous, FdPair* pair) {
  if (pair == nullptr || pair == tail_) tail_ = previous;
}

}  // namespace vandrelle
