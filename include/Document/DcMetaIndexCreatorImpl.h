// The creator of a whole index's document list: <root>.idx (drawn in
// DcMetaDocManager.h), the file list, the indexes of the storage forms and the
// stored fields. A file that yields no document leaves no trace in any of them.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include "Document/DcMetaIndexCreator.h"

struct stat;

namespace vandrelle {

class DcChooser;
class DcFieldsCreator;
class DcFileListCreator;
class DcRegexpTypeMap;
class DcUserTypes;
class FdStream;

class DcMetaIndexCreatorImpl : public DcMetaIndexCreator {
 public:
  // `info` 0 makes a new index, with the first accepted file; 2 binds to an
  // existing one and adds to it. `root` is copied, `usertypes` not owned and may
  // be null. Throws _Exception_indexmgr when it cannot bind.
  DcMetaIndexCreatorImpl(const char* root, short info, DcUserTypes* usertypes);
  ~DcMetaIndexCreatorImpl() override;  // calls DoneAddingDocs() if nobody did and names were added

  int Add(const char* fileName) override;

  // Only in an index that is added to; `fileName` is a real path.
  DocPair Remove(const char* fileName) override;

  // Throws when a new index got no file, or when something could not be written.
  void DoneAddingDocs() override;

  // Counts the rows on disk. Binds to the index if need be.
  int numDocuments() override;
  DcDocumentManager* getDocManager(TkStemmer* stemmer, DcFieldParser* fieldParser) override;

  void addDataType(const char* regexp, int type, char binFlag) override;
  void excludeBadEndings() override;
  void excludeRegExp(const char* regexp) override;
  void DoneWithDataTypes() override;
  void setTypeMap(DcTypeMap* typeMap) override;
  void specifyFields(DcFieldBag* fieldBag) override;
  void setFieldFinder(DcFieldFinder* fieldFinder) override;
  void storeFields(DcDocument* doc) override;

 private:
  enum class Kind { kNothing, kFile, kDirectory };

  // Resolves and types a name. Stores the real path and, of a file, its size.
  // Logs why a name is passed over.
  Kind parseFileName(const char* fileName, std::string& realName, long& size);
  // The real path of a name and its status; false if there is nothing.
  bool resolve(const char* fileName, std::string& realName, struct stat& status);
  Kind checkFile(const char* fileName, const std::string& truepath, const struct stat& status,
                 long& size);
  Kind checkDirectory(const char* fileName, const std::string& truepath);
  DcRegexpTypeMap* builtInMap() const;
  void bindIndex();
  void createIndex();

  short info_;
  std::string root_;
  int32_t currentType_ = 0;
  std::unique_ptr<DcFileListCreator> flc_;  // made at the first Add
  std::unique_ptr<std::fstream> index_;     // <root>.idx
  int32_t filenum_ = -1;                    // last file of the list
  int32_t docNum_ = 0;                      // next document
  bool Done_ = false;
  std::unique_ptr<DcChooser> chooser_;
  DcUserTypes* usertypes_;
  std::unique_ptr<DcFieldFinder> defaultFieldFinder_;
  DcFieldFinder* fieldFinder_;
  std::unique_ptr<DcFieldsCreator> fieldDB_;
  bool fieldsGood_ = false;                // fieldDB_ could be made
  std::unique_ptr<FdStream> fieldStream_;  // over the wanted fields; null when none
  std::unique_ptr<DcRegexpTypeMap> defaultTypeMap_;
  DcTypeMap* typeMap_;

  // The directory last resolved: most files lie beside the one before.
  std::string lastDirectory_;
  std::string lastRealDirectory_;  // empty when lastDirectory_ has none
};

}  // namespace vandrelle
