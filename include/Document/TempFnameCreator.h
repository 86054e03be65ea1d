// Gives names for temporary files beside a root: ".0", ".1" and so on behind it,
// the first that no file has.
#pragma once

namespace vandrelle {

class TempFnameCreator {
 public:
  // What the object does with the root: `copy` it, `transfer` its ownership (an
  // array from new), or only keep a `reference`.
  enum ownership { copy = 0, transfer = 1, reference = 2 };

  explicit TempFnameCreator(const char* root);  // reference
  TempFnameCreator(char* root, ownership how);
  ~TempFnameCreator();
  TempFnameCreator(const TempFnameCreator&) = delete;
  TempFnameCreator& operator=(const TempFnameCreator&) = delete;

  // A new array that the caller owns; null once a suffix reaches 21 characters.
  // The search goes on from the last number given.
  char* fname();

 private:
  static constexpr int kMaxSuffix = 20;

  const char* root_;
  bool owned_;
  unsigned long counter_ = 0;
};

}  // namespace vandrelle
