// Receivers of the pairs of a row, called once a pair while the row is decoded.
// Retrieval, merging and transposition derive their own.
#pragma once

namespace vandrelle {

class IkDataFileUnpacker {
 public:
  virtual ~IkDataFileUnpacker() = default;

  // `doc_num` comes from the file and may be anything if the file is damaged;
  // an action that indexes with it must test it. `idf` is the row's scale.
  virtual void action(int doc_num, int doc_freq, float idf) = 0;
};

// Frequencies into a dense row of integers: row[doc_num] = doc_freq.
class IkDataFileIntUnpacker : public IkDataFileUnpacker {
 public:
  // `row` has `rowSize` entries and belongs to the caller.
  IkDataFileIntUnpacker(int rowSize, int* row) : rowSize_(rowSize), row_(row) {}

  // Throws _Exception_Ik for a document outside of the row.
  void action(int doc_num, int doc_freq, float idf) override;
  void zeroRow();

 protected:
  void requireInRow(int doc_num) const {
    if (static_cast<unsigned>(doc_num) >= static_cast<unsigned>(rowSize_)) outsideRow(doc_num);
  }

  int rowSize_;
  int* row_;

 private:
  [[noreturn]] void outsideRow(int doc_num) const;
};

// As above, but adds: several rows sum up.
class IkDataFileAdditiveIntUnpacker : public IkDataFileIntUnpacker {
 public:
  using IkDataFileIntUnpacker::IkDataFileIntUnpacker;
  void action(int doc_num, int doc_freq, float idf) override;
};

// Weights of unit vectors: row[doc_num] = doc_freq * idf / sum[doc_num].
class IkDataFileFloatUnpacker : public IkDataFileUnpacker {
 public:
  // `row` and `sum` have `rowSize` entries and belong to the caller.
  IkDataFileFloatUnpacker(int rowSize, float* row, const float* sum)
      : rowSize_(rowSize), row_(row), sum_(sum) {}

  // Throws _Exception_Ik for a document outside of the row.
  void action(int doc_num, int doc_freq, float idf) override;
  void zeroRow();

 private:
  int rowSize_;
  float* row_;
  const float* sum_;
};

}  // namespace vandrelle
