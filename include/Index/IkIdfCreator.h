// Writes <root>.idf: one byte a word with a row, in word order, no header. The
// byte is the idf in units of a 255th of the largest possible one, that of a
// word in a single document, rounded down. IkIdfBinder reads it.
#pragma once

#include <memory>

namespace vandrelle {

struct IkIndexInfo;
class StAppendBuffer;
class StStorage;

class IkIdfCreator {
 public:
  // Makes an empty file, replacing an old one. The live documents of `info` give
  // the largest idf.
  IkIdfCreator(const IkIndexInfo* info, const char* name);
  ~IkIdfCreator();  // writes out what waits
  IkIdfCreator(const IkIdfCreator&) = delete;
  IkIdfCreator& operator=(const IkIdfCreator&) = delete;

  void add(float idf);

 private:
  float factor_;  // byte per unit of idf
  std::unique_ptr<StStorage> storage_;
  std::unique_ptr<StAppendBuffer> output_;
};

}  // namespace vandrelle
