#include "Document/DcFieldParser.h"

#include <cstring>
#include <string>
#include <vector>

#include "Document/DcFieldsBinder.h"
#include "Fun/Fd.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr char kAllFields[] = "::all";
constexpr int kTableHint = 16;

int keySize(const char* name) { return static_cast<int>(std::strlen(name)) + 1; }

// The tables outlive their parser, for managers keep asking for them. They are
// held here so that a leak checker can tell them from memory that was lost.
FdBag* keptForProcess(FdBag* table) {
  static auto* const kept = new std::vector<FdBag*>;
  kept->push_back(table);
  return table;
}

}  // namespace

FdBag* DcFieldParser::getSpecialFieldValues(const char*, const char*) { return nullptr; }

char* DcFieldParser::getSpecialFieldText(const char*, const char*) { return nullptr; }

void DcFieldParser::AddConstraintField(const char* fieldName) {
  if (std::strcmp(fieldName, kAllFields) == 0) {
    allConstraint_ = true;
    return;
  }
  if (ConstraintFieldTable_ == nullptr) ConstraintFieldTable_ = keptForProcess(Fd::Queue());
  ConstraintFieldTable_->insert(fieldName, keySize(fieldName), nullptr, 0);
}

void DcFieldParser::AddFieldToBeIndexed(const char* fieldName, int frequency) {
  if (std::strcmp(fieldName, kAllFields) == 0) {
    allIndexed_ = true;
    return;
  }
  if (IndexedFieldTable_ == nullptr) IndexedFieldTable_ = keptForProcess(Fd::Table(kTableHint));
  const int32 stored = frequency;
  IndexedFieldTable_->insert(fieldName, keySize(fieldName), &stored, sizeof stored);
}

bool DcFieldParser::ConstraintField(const char* fieldName) const {
  if (allConstraint_) return true;
  if (ConstraintFieldTable_ == nullptr) return false;
  return ConstraintFieldTable_->find(fieldName, keySize(fieldName), nullptr, nullptr);
}

bool DcFieldParser::FieldToBeIndexed(const char* fieldName, int* frequency) const {
  if (allIndexed_) {
    *frequency = 1;
    return true;
  }
  if (IndexedFieldTable_ == nullptr) return false;
  int32 stored = 0;
  int size = sizeof stored;
  if (!IndexedFieldTable_->find(fieldName, keySize(fieldName), &stored, &size)) return false;
  *frequency = stored;
  return true;
}

FdBag* DcFieldParser::getFieldValues(const char* fieldName, const char* fieldBuf) {
  if (FdBag* special = getSpecialFieldValues(fieldName, fieldBuf)) return special;
  FdBag* values = Fd::Table(kTableHint);
  values->insert(fieldBuf, keySize(fieldBuf), nullptr, 0);
  return values;
}

char* DcFieldParser::getFieldText(const char* fieldName, const char* fieldBuf) {
  int frequency = 0;
  if (!FieldToBeIndexed(fieldName, &frequency)) return nullptr;
  char* text = getSpecialFieldText(fieldName, fieldBuf);
  if (text == nullptr) text = copyText(fieldBuf);
  if (text == nullptr || frequency == 1) return text;

  const HeapAptr<char> once(text);
  std::string repeated;
  for (int i = 0; i < frequency; ++i) repeated.append(text).append(1, ' ');
  return copyText(repeated);
}

char* DcFieldParser::getFieldsText(DcFieldsBinder* fieldDB) {
  // Without a table there is no text even if all fields are to be indexed.
  if (IndexedFieldTable_ == nullptr) return nullptr;
  std::string joined;
  bool any = false;
  DcFieldInfo field;
  while (fieldDB->getField(field)) {
    const HeapAptr<char> text(getFieldText(field.name.get(), field.value.get()));
    if (text == nullptr) continue;
    if (any) joined += ' ';
    joined += text.get();
    any = true;
  }
  return any ? copyText(joined) : nullptr;
}

}  // namespace vandrelle
