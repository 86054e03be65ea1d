// Reads the exclusion file: one entry a line, a regular expression and, behind
// blanks or tabs, the type of the files that it matches. Without a type such
// files are excluded.
//
//   \.txt$   TEXT
//   /drafts/
//
//   for (excludeObj entries(path); entries.nextLine();) use(entries.getName());
#pragma once

#include <fstream>

namespace vandrelle {

class excludeObj {
 public:
  static constexpr int kExclude = -1;

  // Copies nothing of `filename`, which must outlive the object.
  explicit excludeObj(const char* filename);

  // Could the file be opened?
  bool okFile() const { return fileOK; }

  // Reads the next entry; false at the end. A line of more than 2047 characters
  // ends the reading, with a word in the log; a last line needs no newline.
  bool nextLine();

  // The expression of the entry: all up to the first blank or tab, so empty for a
  // line that begins with one. Valid until the next entry.
  const char* getName() const { return fileName; }

  // 1 for the word TEXT, 2 for HTML, 15 for PDF, whatever their case, else
  // kExclude. The first two may have more behind them; PDF ends the line.
  int contentType() const { return content; }

  // Number of the entry's line, from 1.
  int lineNumber() const { return number; }

 private:
  static constexpr int kLineSize = 2048;

  const char* path;
  std::ifstream file;
  char line[kLineSize];
  char fileName[kLineSize];
  int content = kExclude;
  int number = 0;
  bool fileOK;
};

}  // namespace vandrelle
