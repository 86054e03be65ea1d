// Writes one temporary file of the term accumulator: lines in rising word
// order, one a word, ended by a 0 byte where a length would stand.
//
//   size      field
//   1         length: letters in the word, 1 to 63
//   length    the letters
//   4         row size: bytes of the chunk records, big-endian
//   row size  chunk records
//
// A chunk record is the chunk in 3 bytes, big-endian (the high byte of a 32-bit
// number is dropped, so chunks must stay below 16,777,216), and the count: one
// byte below 128, else two bytes, the high one with 128 added. Counts stop at
// 32,767.
//
// IkMergeTempfile reads the file.
#pragma once

#include <cstddef>
#include <string>

#include "Word.h"

namespace vandrelle {

class IkTempfile {
 public:
  static constexpr int kMaxCount = 32767;
  static constexpr std::size_t kMaxRecordBytes = 5;

  // Creates or replaces the file. Throws _Exception_IkIO if it can't, and
  // likewise when a later write fails.
  explicit IkTempfile(const char* filename);
  ~IkTempfile();
  IkTempfile(const IkTempfile&) = delete;
  IkTempfile& operator=(const IkTempfile&) = delete;

  // Begins a line. It must be ended by writeLine().
  void writeWord(const WmWord* word);
  // Appends one record. A frequency of 32,767 or more is logged and stored as
  // 32,767.
  void addChunk(int c_num, int c_freq);
  // Appends records that are encoded already.
  void addRecords(const unsigned char* records, std::size_t size);
  // Ends the line by filling in its row size. An empty row is logged and stays.
  void writeLine();
  // Ends the file and writes it out.
  void writeEOF();

  // Writes one record at `to`, which has room for kMaxRecordBytes; answers its
  // size. `count` lies in 0 to kMaxCount.
  static std::size_t encode(unsigned char* to, int chunk, int count) {
    to[0] = static_cast<unsigned char>(chunk >> 16);
    to[1] = static_cast<unsigned char>(chunk >> 8);
    to[2] = static_cast<unsigned char>(chunk);
    if (count < 128) {
      to[3] = static_cast<unsigned char>(count);
      return 4;
    }
    to[3] = static_cast<unsigned char>((count >> 8) | 0x80);
    to[4] = static_cast<unsigned char>(count);
    return 5;
  }

  // Reads the record at `from` and answers the place behind it. The caller has
  // made sure that kMaxRecordBytes can be read.
  static const unsigned char* decode(const unsigned char* from, int* chunk, int* count) {
    *chunk = from[0] << 16 | from[1] << 8 | from[2];
    if (from[3] < 128) {
      *count = from[3];
      return from + 4;
    }
    *count = (from[3] & 0x7F) << 8 | from[4];
    return from + 5;
  }

  static void logTooFrequent(int chunk);

 private:
  void append(const void* bytes, std::size_t size);
  void flush();

  std::string name_;
  int fd_;
  std::string pending_;        // whole lines and the line being written
  std::size_t linestart_ = 0;  // place of the current line's size field in pending_
};

}  // namespace vandrelle
