// Reads <root>.idf (see IkIdfCreator.h) without touching rows. What it answers
// is rounded to the byte's steps.
#pragma once

#include "Tool/SysTools.h"

namespace vandrelle {

struct IkIndexInfo;

class IkIdfBinder {
 public:
  // `info` must be that of the index the file belongs to.
  IkIdfBinder(const IkIndexInfo* info, const char* name);

  // Of a word, by its number. Throws _Exception_Ik past the end of the file.
  float idf(unsigned word) const { return idfs_[value(word)]; }
  int df(unsigned word) const { return dfs_[value(word)]; }

 private:
  unsigned char value(unsigned word) const {
    if (word >= size_) pastEnd(word);
    return values_[word];
  }
  [[noreturn]] void pastEnd(unsigned word) const;

  SysToolsMapObject map_;
  const unsigned char* values_ = nullptr;
  unsigned size_ = 0;
  float idfs_[256];  // by byte
  int dfs_[256];
};

}  // namespace vandrelle
