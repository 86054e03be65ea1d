// Reads the field database of an index: in the slow form, whose layout
// DcFieldsCreator.h gives, or in the fast one, which has the same fields in the
// same order for every document, so that showing a result costs one seek:
//
//   <root>.fidx   5 bytes a document: its position in .fdat, the low 8 bits of the
//                 high word, then the low word
//   <root>.fnam   the names, each with its NUL; a field's number is its place. One at
//                 least, none empty, and 32,768 bytes are the limit here too
//   <root>.fdat   for each document one value a field, in the order of .fnam, each
//                 with its NUL; an absent value is an empty string
//
// The slow form is preferred where both exist whole. Failures show as valid() or as
// null and false results; only the storage of the values throws.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Document/DcFileStream.h"
#include "Storage/StStorageStream.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class DcFieldBag;
class DcFieldFilter;
class FdBag;
class StStorageBuffer;

// One field as the binder hands it out.
struct DcFieldInfo {
  HeapAptr<char> name;
  HeapAptr<char> value;
};

class DcFieldsBinder {
 public:
  // A value is read up to its NUL, at most to this length with the NUL.
  static constexpr int kValueBytes = 1024;

  explicit DcFieldsBinder(const char* root);
  ~DcFieldsBinder();
  DcFieldsBinder(const DcFieldsBinder&) = delete;
  DcFieldsBinder& operator=(const DcFieldsBinder&) = delete;

  bool valid() const { return valid_; }
  int numDocuments() const { return numDocuments_; }

  // Chooses the document of which getField() is to speak. False when there is
  // none of that number.
  bool gotoDoc(int num);
  // The next field of that document; false at the end.
  bool getField(DcFieldInfo& field);

  // The first value of that name in a document: a new array that the caller owns
  // (delete[]), or null. In the fast form an absent value is an empty string.
  char* retrieve(int num, const char* fieldName);

  // Values of the slow form pass through the filter (not owned) while it is on.
  void setFilter(DcFieldFilter* filter);
  void filterOff() { filter_in_use_ = false; }
  void filterOn() { filter_in_use_ = true; }

  // Switches to the fast form of `root` and back.
  bool fastFilesOn(const char* root);
  void fastFilesOff();

  // Fast form: all values of a document in one buffer, owned by the caller, else
  // null; and a field of it, as retrieve().
  StStorageBuffer* getBuffer(int doc);
  char* retrieve(StStorageBuffer* buffer, const char* fieldName);

  // Lets `srcName` be answered and reported as `destName`.
  void equate(const char* srcName, const char* destName);
  // The same for each pair of a bag, names with their NUL as key and data.
  void equate(FdBag* conversions);

  // Makes the fast form of `droot` (null: of `sroot`) from the slow one of
  // `sroot`, with the fields of the bag. `filter` and `conversions` may be null.
  // Without bag and filter only .fidx is made, for the values of .fld.val.
  static bool createFastFiles(DcFieldBag* fields, DcFieldFilter* filter, FdBag* conversions,
                              const char* sroot, const char* droot);

 private:
  bool openSlow(const char* root);
  bool getFastFiles(const char* root);
  void refreshValid();
  // The next record of the document in hand; false at its end.
  bool getFieldPos(std::uint16_t* nampos, StStoragePos* valpos);
  std::unique_ptr<char[]> readValue(const StStoragePos& valpos, const std::string& name);
  bool getFastField(DcFieldInfo& field);
  bool loadFast(int doc);
  // Field `number` among `size` bytes of strings; null past the last.
  char* fastValue(const char* strings, std::size_t size, int number) const;
  int fieldNum(const std::string& name) const;
  std::string convertName(const std::string& name) const;
  static bool createFastIdx(const char* sroot, const char* droot);

  int numDocuments_ = 0;
  bool valid_ = false;
  int docnum_ = -1;  // of the slow form in hand
  bool endfields_ = false;
  uint32 listpos_ = 0;
  DcSourceStream ismain_;
  DcSourceStream islist_;
  StStorageStream isval_;
  bool slowOpen_ = false;
  std::map<uint32, std::string> ptr2nam_;
  std::map<std::string, uint32> nam2ptr_;

  std::unique_ptr<SysToolsMapObject> fastIdx_;
  std::unique_ptr<StStorageStream> fastDat_;
  std::string fastFileRoot_;  // not empty: fast mode
  std::vector<std::string> numToName_;
  int gonum_ = -1;       // document chosen in fast mode
  int internalNum_ = 0;  // next field in fast mode
  bool filter_in_use_ = false;
  DcFieldFilter* filter_ = nullptr;
  int cachedDocNum_ = -1;
  std::vector<char> cachedFieldBuf_;  // 1,024 bytes a field
  std::size_t cachedBytes_ = 0;
  std::map<std::string, std::string> namePairTable_;
};

}  // namespace vandrelle
