// Builds the names of an index's files: a root name and a literal suffix that
// begins with a dot. The root is taken as it stands: neither changed nor tested.
#pragma once

namespace vandrelle {

class NameManager {
 public:
  static constexpr int kMaxSuffix = 20;  // enough for every file of an index

  // `maxSuffix`: the most characters that a suffix may have. Without a prefix the
  // root is empty until base() is called.
  explicit NameManager(int maxSuffix = kMaxSuffix);
  explicit NameManager(const char* prefix, int maxSuffix = kMaxSuffix);
  ~NameManager();
  NameManager(const NameManager&) = delete;
  NameManager& operator=(const NameManager&) = delete;

  // Takes a new root, copied; null counts as empty.
  void base(const char* prefix);

  // Root and suffix, in the object's one buffer: the next call overwrites it, so two
  // names of one object cannot be held together. Null gives the bare root. Throws
  // _Exception_NameManager if the suffix is longer than the limit.
  char* suffix(const char* suf) const;

  // The same as a copy, freed by the caller with delete[].
  char* copySuffix(const char* suf) const;

 private:
  int maxSuffix_;
  char* prefix_ = nullptr;
  char* prefixEnd_ = nullptr;
};

}  // namespace vandrelle
