// Which stored fields become special words, and which are read as text before a
// document's body and with what weight.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

class DcFieldsBinder;
class FdBag;

class DcFieldParser {
 public:
  DcFieldParser() = default;
  // The tables live as long as the process: managers keep asking for them.
  virtual ~DcFieldParser() = default;
  DcFieldParser(const DcFieldParser&) = delete;
  DcFieldParser& operator=(const DcFieldParser&) = delete;

  // Values of an application's own making for a field's text; the bag's keys are
  // the values with their NUL. A new bag that the caller owns, or null for the
  // usual treatment.
  virtual FdBag* getSpecialFieldValues(const char* fieldName, const char* fieldBuf);

  // Text to index in place of the field's text: a new array that the caller
  // owns, or null for the usual treatment.
  virtual char* getSpecialFieldText(const char* fieldName, const char* fieldBuf);

  // The name "::all" stands for every field.
  void AddConstraintField(const char* fieldName);
  void AddFieldToBeIndexed(const char* fieldName, int frequency);

  // Could any field be a constraint field?
  bool hasConstraintFields() const { return allConstraint_ || ConstraintFieldTable_ != nullptr; }
  bool ConstraintField(const char* fieldName) const;
  // Stores how often the field is to be counted, if true.
  bool FieldToBeIndexed(const char* fieldName, int* frequency) const;

  // The values that a field's text stands for, each of which becomes a special
  // word: a new bag that the caller owns.
  FdBag* getFieldValues(const char* fieldName, const char* fieldBuf);

  // The text to index of the document at which `fieldDB` stands: a new array
  // that the caller owns, or null.
  char* getFieldsText(DcFieldsBinder* fieldDB);
  // The same of one field.
  char* getFieldText(const char* fieldName, const char* fieldBuf);

 private:
  bool allConstraint_ = false;
  FdBag* ConstraintFieldTable_ = nullptr;
  bool allIndexed_ = false;
  FdBag* IndexedFieldTable_ = nullptr;
};

}  // namespace vandrelle
