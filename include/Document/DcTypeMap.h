// Answers which data type a file has, or that it is to be left out. An index
// creator asks it once for each path; an application may supply its own map.
#pragma once

#include <cstdint>
#include <memory>

#include "Document/DcBintest.h"

namespace vandrelle {

class FdBag;
class FdStream;
class RegularExpression;

class DcTypeMap {
 public:
  virtual ~DcTypeMap() = default;

  // The data type of the file, 0 to leave it out. `filename` is a real path.
  virtual int fileToType(const char* filename) = 0;

  // Non-zero to leave the directory and all below it out.
  virtual int excludeDir(const char* dirname) = 0;
};

// One rule of a DcRegexpTypeMap.
struct DcDataTypeRecord {
  int32_t dataType;               // 0 excludes
  RegularExpression* expression;  // owned by the map
  int8_t binFlag;                 // non-zero: binary files are left out
};

// The built-in map: an ordered list of regular expressions, of which the first
// that matches decides. Exclusions are rules of type 0 in the same list, so the
// order of the calls is the policy, and a file that no rule matches is left out
// without a word. Build the list, call DoneWithDataTypes(), then ask.
class DcRegexpTypeMap : public DcTypeMap {
 public:
  DcRegexpTypeMap();
  ~DcRegexpTypeMap() override;
  DcRegexpTypeMap(const DcRegexpTypeMap&) = delete;
  DcRegexpTypeMap& operator=(const DcRegexpTypeMap&) = delete;

  // Appends a rule. The expression is searched anywhere in the path; one that
  // does not compile is kept and never matches. A `binFlag` other than 0 asks
  // for the test for binary content.
  void addDataType(const char* regexp, int type, char binFlag);
  void excludeRegExp(const char* regexp) { addDataType(regexp, 0, 0); }

  // Endings of objects, pictures, sound and films. In lower case only.
  void excludeBadEndings();

  void DoneWithDataTypes();

  int fileToType(const char* filename) override;
  int excludeDir(const char* dirname) override;

 private:
  void startWalk();
  DcDataTypeRecord currentRule() const;
  void logExclusion(const char* path) const;

  std::unique_ptr<FdBag> typeTable_;   // expression text to DcDataTypeRecord, in order of addition
  std::unique_ptr<FdStream> iter_;     // walks typeTable_
  std::unique_ptr<DcBintest> tester_;  // made with the first rule that asks for the test
};

}  // namespace vandrelle
