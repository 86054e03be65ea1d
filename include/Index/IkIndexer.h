// Stages 1 and 2 of a build. Stage 1 turns the stream of (word, chunk, position)
// into sorted temporary files: an in-memory table is written out whenever it has
// grown past its limit. Stage 2 merges the files and compiles the index.
//
//   <root>.tmpNNN   a temporary file, see IkTempfile.h
//   <root>.prxNNN   the positions of its occurrences, only with recordProximity
//
// The files stay on disk after the merge; their removal is the caller's.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Index/IkCreatorImpl.h"
#include "Index/IkTermTable.h"

namespace vandrelle {

class IkMergeObject;

// The name of the file of positions beside a temporary file: ".tmp" becomes
// ".prx". Throws _Exception_Ik if there is no ".tmp" in it.
std::string IkProxfileName(const char* tmpname);

class IkIndexer : public IkCreatorImpl {
 public:
  explicit IkIndexer(const char* rootname);
  // Compiles the index if the table holds terms.
  ~IkIndexer() override;

  // The empty word is passed over: it would read as the end of its file.
  void addTerm(const WmWord* word, int chunk, int pos) override;
  // Writes the table out, merges the temporary files of this run and compiles the
  // index. Nothing happens if the table is empty, even if it was only just
  // written out: see makeIndexOfRun().
  void makeIndex() override;
  // The same for a table that may be empty. Nothing happens if this run has no
  // temporary file.
  void makeIndexOfRun();

  // Writes the table out unless it is empty.
  void flushTempfiles();
  // Forgets what the table holds, so that nothing is compiled at the end. For an
  // indexer whose work was cut short.
  void discard();

  // Temporary file `number` of the index `root`.
  static std::string tempfileName(const std::string& root, int number);
  // Adds a temporary file by name to the list for makeIndexExplicitTempfiles().
  // One that can't be opened is passed over. With recordProximity its name must
  // do for IkProxfileName().
  void addTempfile(const char* tmpname);
  void makeIndexExplicitTempfiles();

  // Stage 3 on the same root.
  void makeTranspose();

  void resetInfo();
  void readInfo();
  void writeInfo();

  // The number of the first temporary file of this run.
  int startfilenum() const { return startfilenum_; }
  void startfilenum(int number) { startfilenum_ = filenum_ = number; }
  // The number of the next one: one past the last that was written.
  int filenum() const { return filenum_; }

  // The capacity in bytes that a block of `n` bytes is given: a power of two of
  // a scale that depends on the size. Throws _Exception_Fatal for more than
  // 16 MB: that is the limit of one word's pairs, 8 bytes each, in one file.
  static std::size_t allocsize(std::size_t n);

 private:
  // The table is written out at the first term of the chunk after the one in
  // which it passed this many bytes, by the accounting of newEntry().
  static constexpr int maxBytesUsed_ = 0x400000;

  // What the positions of one word take while the table is filled.
  using Positions = std::vector<int>;

  // A term on its way into the table. Terms wait in a short queue, and the table's
  // memory is asked for while they do: the table is far larger than the cache.
  struct PendingTerm {
    WmLocalWord word;
    std::uint32_t hash;
    int chunk;
    int pos;
  };
  static constexpr unsigned kQueueSize = 8;

  IkIndexerTableEntry& newEntry(const PendingTerm& term);
  void enterTerm(const PendingTerm& term);
  // Enters all terms that wait.
  void drain();
  void addPosition(const IkIndexerTableEntry& entry, int pos);
  void flushToFile();
  void resetTables();
  void writeProximity(const IkIndexerTableEntry& entry, class IkProxCreator* prox);
  void compile(const std::vector<std::string>& tempfiles);

  IkTermTable wordTable_;
  PendingTerm queue_[kQueueSize];       // a ring: term n stands at n modulo its size
  unsigned queued_ = 0;                 // terms that ever came in
  unsigned entered_ = 0;                // terms that went on to the table
  std::vector<Positions> proxEntries_;  // by entry number; empty without proximity
  int filenum_ = 0;                     // of the next temporary file
  int startfilenum_ = 0;
  std::vector<std::string> tempfiles_;  // the explicit list
  int bytesUsed_ = 0;
  int lastDoc_ = -1;
};

}  // namespace vandrelle
