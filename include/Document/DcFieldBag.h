// Which fields are to be stored with each document.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

class FdBag;
class FdStream;

// The data of an entry.
struct DcFieldCheck {
  int32 required;  // non-zero: a document without the field is told in the log
};

class DcFieldBag {
 public:
  // Non-zero `ordered`: the fields come in the order of Add. Zero: in the order
  // of a hash table, which then decides the order of the stored fields.
  explicit DcFieldBag(int ordered);
  DcFieldBag(int ordered, int /*reserved*/) : DcFieldBag(ordered) {}
  ~DcFieldBag();
  DcFieldBag(const DcFieldBag&) = delete;
  DcFieldBag& operator=(const DcFieldBag&) = delete;

  // Copies the name.
  void Add(const char* field, int required);

  // A new stream that the caller owns: names with their NUL as keys, a
  // DcFieldCheck as data. The bag must outlive it.
  FdStream* iterator();

 private:
  FdBag* fieldBag_;
};

}  // namespace vandrelle
