// A string whose copies share one heap block: a count of holders, then the text.
// One thread only: the count is not guarded.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vandrelle {

class VdString {
 public:
  VdString() : VdString("") {}
  // Copies; null counts as empty.
  VdString(const char* text);  // NOLINT: converts on purpose
  VdString(const VdString& other) : block_(other.block_) { ++block_->holders; }
  ~VdString() { release(); }

  VdString& operator=(const VdString& other);
  VdString& operator=(const char* text) { return *this = VdString(text); }

  // Leaves other holders of the text as they are.
  VdString& operator+=(const char* text);

  // Valid until the string is assigned, appended to or destroyed.
  operator const char*() const { return block_->text; }  // NOLINT: converts on purpose

 private:
  struct Block {
    std::uint32_t holders;
    char text[];
  };
  static Block* newBlock(std::size_t length);
  void release();

  Block* block_;
};

}  // namespace vandrelle
