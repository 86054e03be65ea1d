// Chooses, by the data type of a file, who adds it and with which helpers: one
// document a file, articles cut from a file, or a form of its own. Serves the
// creator of an index, and its readers, which only ask for helpers.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

#include "Document/DcDataType.h"

namespace vandrelle {

class DcMetaDocManager;
class DcMetaIndexCreator;
class DcMultiDocIndexCreator;
class DcOneDocIndexCreator;
class DcPartialDocumentManager;
class DcPartialIndexCreator;
class DcUserTypes;
class DiHelperDistributor;
struct HelperStruct;

// What stands behind the rows of <root>.idx: the next free number of each form, big-
// endian, 4 bytes each: one document a file, articles, 16 forms of an application's.
struct DcTrailer {
  static constexpr int kUserSlots = 16;
  static constexpr int kBytes = 4 * (2 + kUserSlots);

  void load(const char* from);
  void store(char* to) const;

  int32_t oneDocNum_ = 0;
  int32_t multiDocNum_ = 0;
  int32_t userCreatorNums_[kUserSlots] = {};
};

class DcChooser {
 public:
  static constexpr int kUserSlots = DcTrailer::kUserSlots;

  // `index`: the bound <root>.idx when an index is added to, else null. `mcr` is
  // null when the chooser serves a reader, `usertypes` in an application without
  // types of its own. Nothing of these is owned; `root` is copied.
  DcChooser(const char* root, DcUserTypes* usertypes, std::fstream* index, DcMetaIndexCreator* mcr);
  ~DcChooser();
  DcChooser(const DcChooser&) = delete;
  DcChooser& operator=(const DcChooser&) = delete;

  // Adds a file of a type from 1 up. Answers the number of documents made and
  // stores in `*docNum` the number that the first has inside its form; a form of
  // its own leaves `*docNum` alone.
  int Add(const char* fileName, int type, long* docNum);

  // The helpers of a type, -1 for the type of the file being added. They stay
  // owned by the chooser or the application. Never null: an application's type
  // without helpers is read as plain text.
  HelperStruct* helpers(int type);

  // May a file of the type hold more than one document?
  int multiDocFiles(int type);

  // Has the type a form of its own, neither one document a file nor articles?
  bool nonStdType(int type) const { return type == DcDataType::kPdf; }

  // The manager of such a type, made on first need and owned here; null for any
  // other type.
  DcPartialDocumentManager* nonStdManager(int type, DcMetaDocManager* mmgr);

  // Appends the trailer.
  void writeNumsToDisk(std::fstream* index);

  // Ends the adding in all forms. Throws _Exception_FileInd when the index of a
  // form could not be written.
  void Done();

 private:
  int nonStdAdd(const char* fileName, int type);
  int userAdd(const char* fileName, int type, long* docNum);

  DcUserTypes* userTypes_;
  std::string oneRoot_, multiRoot_;
  std::unique_ptr<DcOneDocIndexCreator> oneDocCreator_;
  std::unique_ptr<DcMultiDocIndexCreator> multiDocCreator_;
  std::unique_ptr<DcPartialIndexCreator> userCreators_[kUserSlots];
  DcTrailer next_;
  int8_t info_ = 0;  // 2: the index is added to
  std::string root_;
  std::unique_ptr<DiHelperDistributor> helperDist_;
  std::unique_ptr<DcPartialDocumentManager> PDFManager_;
  HelperStruct* userHelpers_[kUserSlots] = {};
  int32_t currentType_ = 0;
  DcMetaIndexCreator* mcr_;
};

}  // namespace vandrelle
