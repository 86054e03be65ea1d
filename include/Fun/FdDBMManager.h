// Opens and creates disk tables.
//
// Files are made with permissions 0644. The caller owns the tables. Failures throw
// _Exception_DBM.
#pragma once

namespace vandrelle {

class FdBag;

class FdDBMManager {
 public:
  enum Mode : int {
    kOpenOrCreate = 0,
    kCreateAnew = 1,
    kOpenReadOnly = 2,
  };

  // Sorted by key, bytewise. Sizes in bytes; 0 takes the library's choice.
  static FdBag* Btree(const char* name, int mode);
  static FdBag* Btree(const char* name, int mode, int cachsize, int psize, int minkeypage);

  static FdBag* Hash(const char* name, int mode);
  static FdBag* Hash(const char* name, int mode, int bucksize, int cachsize, int fillfactor);

  // Read-only, whichever of the two kinds the file is.
  static FdBag* Bind(const char* name);

  // Not offered: throws _Exception_DBMUnimpl.
  static FdBag* Ndbm(const char* name);

 private:
  static int openMode(int mode);
};

}  // namespace vandrelle
