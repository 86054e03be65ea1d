// Takes file and directory names one at a time and makes the document list of
// an index from them: types each file, cuts multi-article files, numbers the
// documents and stores their fields. DcManager::getMetaIndexCreator makes one.
//
// Order of calls: data types and exclusions, DoneWithDataTypes, specifyFields,
// setFieldFinder, then Add for each name, then DoneAddingDocs, then
// getDocManager. Nothing may be added after DoneAddingDocs.
#pragma once

#include "Document/DcIndexCreator.h"

namespace vandrelle {

class DcDocument;
class DcFieldBag;
class DcFieldFinder;
class DcTypeMap;

class DcMetaIndexCreator : public DcIndexCreator {
 public:
  // Rules of the built-in type map (see DcRegexpTypeMap): the first that matches
  // a path decides, type 0 excludes, a `binFlag` other than 0 leaves binary files
  // out. Without effect while another map is set.
  virtual void addDataType(const char* regexp, int type, char binFlag) = 0;
  virtual void excludeBadEndings() = 0;
  virtual void excludeRegExp(const char* regexp) = 0;
  virtual void DoneWithDataTypes() = 0;

  // Not owned; null goes back to the built-in map.
  virtual void setTypeMap(DcTypeMap* typeMap) = 0;

  // The fields to store for each document. The bag must outlive the adding; null
  // stores none.
  virtual void specifyFields(DcFieldBag* fieldBag) = 0;

  // Not owned; null goes back to the built-in finder.
  virtual void setFieldFinder(DcFieldFinder* fieldFinder) = 0;

  // Stores the fields of the next document in number order. Called by the
  // creators of the storage forms.
  virtual void storeFields(DcDocument* doc) = 0;
};

}  // namespace vandrelle
