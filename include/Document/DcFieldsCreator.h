// Writes the fields of documents while they are added: the field files beside
// the index.
#pragma once

namespace vandrelle {

class DcFieldsCreator {
 public:
  // With `okexist` 0 a field file that is already there makes it invalid.
  DcFieldsCreator(const char* root, int okexist);
  ~DcFieldsCreator();
  DcFieldsCreator(const DcFieldsCreator&) = delete;
  DcFieldsCreator& operator=(const DcFieldsCreator&) = delete;

  // False once anything has failed; the other operations then do nothing.
  bool valid() const { return valid_; }
  int numDocuments() const { return numDocuments_; }

  // One field of the current document. Copies both.
  void add(const char* fieldName, const char* fieldValue);

  // Closes the current document, one without fields too.
  void endDoc();

  void flush();

 private:
  int numDocuments_ = 0;
  bool valid_ = true;
};

}  // namespace vandrelle
