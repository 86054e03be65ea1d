// Writes the field database of an index while documents are added: for each
// document number a set of named text values, any fields in any order. This is
// the slow form; DcFieldsBinder reads it and makes the fast form from it.
//
// Integers are big-endian; no file has a header.
//
//   <root>.fld.ptr   4 bytes a document, in number order: where its records begin
//                    in .fld.lst, 0xFFFFFFFF for a document without fields
//   <root>.fld.lst   10 bytes a field:
//                      0  2  bits 0 to 14: offset of the name in .fld.nam;
//                            bit 15: first record of a document
//                      2  8  position of the value in .fld.val, high word first
//   <root>.fld.nam   the distinct names in order of first use, each with its NUL;
//                    a name's offset is its identity, so 32,768 bytes are the limit
//   <root>.fld.val   the values, each with its NUL
//
// Nothing here throws but the storage of the values: any failure clears valid()
// for good, and then every operation does nothing.
#pragma once

#include <fstream>
#include <functional>
#include <vector>

#include "Fun/FdWrapper.h"
#include "Storage/StStorageStream.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

class DcFieldBag;
class FdBag;
class IkMergeDeleter;

template <typename Argument, typename Result>
using unary_fct = std::function<Result(Argument)>;

class DcFieldsCreator {
 public:
  static constexpr uint32 kNoFields = 0xFFFFFFFF;
  static constexpr std::uint16_t kFirstRecord = 0x8000;
  static constexpr uint32 kNameLimit = 0x8000;
  static constexpr int kPtrBytes = 4;
  static constexpr int kRecordBytes = 10;

  // Opens the files at their ends, creating those that are missing. With
  // `okexist` 0 a .ptr, .lst or .nam file that is there already makes the object
  // invalid.
  DcFieldsCreator(const char* root, int okexist);
  ~DcFieldsCreator();
  DcFieldsCreator(const DcFieldsCreator&) = delete;
  DcFieldsCreator& operator=(const DcFieldsCreator&) = delete;

  bool valid() const { return valid_; }
  int numDocuments() const { return numDocuments_; }

  // Goes on with the documents in front of number `docnum`; those from it on move
  // up behind the new ones. False if there are fewer.
  bool gotoDoc(int docnum);

  // One field of the current document. Copies both.
  void add(const char* fieldName, const char* fieldValue);

  // Closes the current document, one without fields too.
  void endDoc();

  void flush();

  // Operations on whole databases; true on success.
  // Puts document perm(i) in place i.
  static bool permute(const unary_fct<uint32, uint32>& perm, const char* root);
  static bool copy(const char* src_root, const char* dst_root);
  static bool remove(const char* root);
  // Inserts the documents of `src_root` into `dst_root` in front of number
  // `docnum`, at the end if that is negative. With a bag only its fields, else
  // all. `conversions` (source name to name, both with their NUL) may be null.
  static bool merge(const char* src_root, const char* dst_root, DcFieldBag* fieldBag,
                    FdBag* conversions, int docnum);
  // Appends the documents of one fast form to another, leaving out those that
  // `deleter` (may be null) says are gone.
  static bool mergeFastFields(const char* src_root, const char* dst_root, IkMergeDeleter* deleter);

 private:
  bool open(const char* root, int okexist);
  bool namePosition(const char* fieldName, uint32* nampos);
  void restoreTail();
  void refreshValid();

  int numDocuments_ = 0;
  bool valid_ = false;
  uint32 listptr = 0;  // where the current document's records begin
  std::fstream osmain;
  std::fstream oslist;
  std::fstream osnam;
  StStorageStream osval;
  FdSCBag<uint32> names;
  uint32 mainEnd_ = 0;  // write positions, so that streams needn't be asked
  uint32 listEnd_ = 0;
  uint32 nameEnd_ = 0;
  std::vector<char> mainbuf_;  // the rest of .fld.ptr, set aside by gotoDoc()
};

}  // namespace vandrelle
