// What the creators of the two storage forms share: an index file of their own
// with one record a document, created with the first document or bound to.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include "Document/DcIndexCreator.h"

namespace vandrelle {

class DcChooser;
class DcMetaIndexCreator;
struct HelperStruct;

class DcFileIndexCreator : public DcPartialIndexCreator {
 public:
  // Brings the index to disk and closes it. Throws _Exception_FileInd when it
  // could not be written.
  void DoneAddingDocs() override;

 protected:
  // `root` with the ending of the form; the index is <root>.idx. Owns neither the
  // chooser, which gives the helpers, nor the creator of the whole index, which
  // stores the fields.
  DcFileIndexCreator(const char* root, DcChooser* helpt, DcMetaIndexCreator* mcr);

  // Sets docNum_ from an index just bound, which stands at its end.
  virtual void setMembers() = 0;

  // Both throw _Exception_FileInd.
  void bindIndex();
  void createIndex();  // nothing if it is there

  void writeInt32(int32_t value);

  std::string indexName_;
  std::unique_ptr<std::fstream> index_;
  bool notEmpty_ = false;
  bool Done_ = false;
  int32_t docNum_ = 0;  // next number in this form
  DcChooser* helperTable_;
  HelperStruct* helpers_ = nullptr;  // of the file being added
  DcMetaIndexCreator* mcr_;
};

}  // namespace vandrelle
