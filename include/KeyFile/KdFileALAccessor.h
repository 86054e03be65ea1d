// Readers of the plain key files, kinds 7 to 11: the pointer file is loaded when
// the table is bound. Layout: KdFileALCreator.h.
#pragma once

#include <iosfwd>
#include <vector>

#include "KeyFile/KdChunkAccessor.h"

namespace vandrelle {

class KdFileALAccessor : public KdChunkAccessor {
 public:
  ~KdFileALAccessor() override;

  // Takes the records of a plain pointer file, from byte 20 on, apart into the form
  // that mapped files have (see KdPointerTable.h). False if they are not whole.
  static bool Read_Pointers(const unsigned char* from, std::size_t bytes, int32 num_chunks,
                            std::vector<unsigned char>* records, std::vector<unsigned char>* words);

 protected:
  // Reads `*ptr_file` from its beginning. Owns the descriptor from now on, unless it
  // throws: _Exception_KdAccess, as all its operations do.
  KdFileALAccessor(std::ifstream* ptr_file, int keyfile_fd, KdDataPlace place);

 private:
  [[noreturn]] void fail(const char* text, const char* detail = "",
                         const char* source = "KdFileALAccessor",
                         int line = __builtin_LINE()) override;

  std::vector<unsigned char> records_;
  std::vector<unsigned char> words_;
};

// Kinds 8 and 9: every entry has data_size bytes of data.
class KdFileALAccessorCon final : public KdFileALAccessor {
 public:
  KdFileALAccessorCon(std::ifstream* ptr_file, int keyfile_fd)
      : KdFileALAccessor(ptr_file, keyfile_fd, KdDataPlace::kConstant) {}
  KdStream* iterator() override;
};

// Kinds 7 and 10: every entry tells its size.
class KdFileALAccessorVar final : public KdFileALAccessor {
 public:
  KdFileALAccessorVar(std::ifstream* ptr_file, int keyfile_fd)
      : KdFileALAccessor(ptr_file, keyfile_fd, KdDataPlace::kVariable) {}
  KdStream* iterator() override;
};

// Kind 11: 4 bytes of data or none.
class KdInlineAcc final : public KdFileALAccessor {
 public:
  KdInlineAcc(std::ifstream* ptr_file, int keyfile_fd)
      : KdFileALAccessor(ptr_file, keyfile_fd, KdDataPlace::kInline) {}
  KdStream* iterator() override;
};

// Everything from the beginning of the stream; empty if it can't be read or is
// longer than any pointer file.
std::vector<unsigned char> KdReadWholeFile(std::ifstream* file);

}  // namespace vandrelle
