// Temporary files and their merge: bytes, order, split chunks, damage.

#include "Index/IkMerger.h"

#include <algorithm>
#include <bit>
#include <map>
#include <sstream>

#include "IkTestTools.h"
#include "Index/IkIndexer.h"
#include "Index/IkMergeTempfile.h"
#include "Index/IkTempfile.h"
#include "Index/IkTempfileMerger.h"
#include "Index/IkWordOrder.h"
#include "Word.h"

namespace vandrelle {
namespace {

class IkMergeTest : public DirectoryTest {
 protected:
  std::string path(const std::string& name) const { return directory_ / name; }

  struct Line {
    std::string word;
    std::vector<IkDocumentInfo> pairs;
  };

  std::string write(const std::string& name, const std::vector<Line>& lines) const {
    IkTempfile file(path(name).c_str());
    for (const Line& line : lines) {
      file.writeWord(WmLocalWord(line.word.c_str()).word());
      for (const IkDocumentInfo& pair : line.pairs) file.addChunk(pair.chunk, pair.frequency);
      file.writeLine();
    }
    file.writeEOF();
    return path(name);
  }

  // "word:chunk*frequency,..." for each word, with D or S for the form of the row.
  static std::string merged(const std::vector<std::string>& files, int rowSize) {
    IkMerger merger(static_cast<int>(files.size()));
    std::vector<int> row(static_cast<std::size_t>(rowSize));
    merger.row(row.data());
    merger.rowSize(rowSize);
    int i = 0;
    for (const std::string& file : files) {
      merger.mergeObject(i++, new IkMergeTempfile(file.c_str(), nullptr));
    }
    std::ostringstream out;
    for (merger.reset(); merger.more(); merger.next()) {
      out << *merger.word() << (merger.sparseSize() < 0 ? " D" : " S");
      const IkDocumentInfo* pairs = reinterpret_cast<const IkDocumentInfo*>(row.data());
      for (int p = 0; p < merger.sparseSize(); ++p) {
        out << ' ' << pairs[p].chunk << '*' << pairs[p].frequency;
      }
      for (int c = 0; merger.sparseSize() < 0 && c < rowSize; ++c) {
        if (row[static_cast<std::size_t>(c)] != 0) {
          out << ' ' << c << '*' << row[static_cast<std::size_t>(c)];
        }
      }
      out << '\n';
    }
    return out.str();
  }
};

TEST_F(IkMergeTest, TempfileBytes) {
  const std::string file = write(
      "bytes", {{"ab", {{1, 1}, {0x123456, 127}}}, {"b", {{2, 128}, {3, 32766}, {4, 40000}}}});
  const std::string expected(
      "\x02"
      "ab\0\0\0\x08\0\0\x01\x01\x12\x34\x56\x7F"
      "\x01"
      "b\0\0\0\x0F\0\0\x02\x80\x80\0\0\x03\xFF\xFE\0\0\x04\xFF\xFF\0",
      15 + 21 + 1);
  EXPECT_EQ(bytesOf(file), expected);
}

TEST_F(IkMergeTest, MergesEqualWordsInChunkOrderAndJoinsSplitChunks) {
  const std::vector<std::string> files = {
      write("m0", {{"apple", {{0, 2}}}, {"bee", {{1, 5}}}}),
      write("m1", {{"apple", {{4, 1}}}, {"bee", {{1, 200}, {6, 1}}}, {"cat", {{5, 1}}}}),
  };
  EXPECT_EQ(merged({files[0], files[1]}, 100), "apple S 0*2 4*1\nbee S 1*205 6*1\ncat S 5*1\n");
  EXPECT_EQ(merged({files[0]}, 100), "apple S 0*2\nbee S 1*5\n");
  // Bounds of 2 elements a source: 4 are too many for a row of 7.
  EXPECT_EQ(merged({files[0], files[1]}, 7), "apple D 0*2 4*1\nbee D 1*205 6*1\ncat S 5*1\n");
}

TEST_F(IkMergeTest, ManySourcesComeOutSorted) {
  std::vector<std::string> files;
  std::map<std::string, std::string> rows;
  for (int i = 0; i < 40; ++i) {
    std::vector<Line> lines;
    for (int w = i % 7; w < 100; w += 1 + i % 5) {
      const std::string word = "longprefix" + std::to_string(1000 + w);
      lines.push_back({word, {{i * 2, 1}}});
      rows[word] += ' ' + std::to_string(i * 2) + "*1";
    }
    files.push_back(write("many" + std::to_string(i), lines));
  }
  std::string expected;
  for (const auto& [word, row] : rows) expected += word + " S" + row + '\n';
  EXPECT_EQ(rows.size(), 100u);
  EXPECT_EQ(merged(files, 1000), expected);
}

TEST_F(IkMergeTest, DamagedFilesEndInOneMessage) {
  const std::string whole =
      bytesOf(write("whole", {{"word", {{1, 1}, {2, 300}}}, {"x", {{3, 1}}}}));
  for (std::size_t length = 1; length < whole.size() - 1; ++length) {
    const std::string cut = path("cut");
    writeBytes(cut, whole.substr(0, length));
    const std::string message = thrownBy([&] { merged({cut}, 10); });
    // A cut between two lines can't be told from the end of the file.
    if (!message.empty()) {
      EXPECT_NE(message.find("is damaged"), std::string::npos) << message;
    }
  }
  // In a dense row, in a sparse one, and just past the end.
  const std::string high = write("high", {{"w", {{10, 1}}}});
  for (const int rowSize : {2, 8, 10}) {
    EXPECT_EQ(thrownBy([&] { merged({high}, rowSize); }),
              "Ik: Read document that is too large while unpacking (10)");
  }
  EXPECT_EQ(merged({high}, 11), "w S 10*1\n");
}

TEST(IkWordOrder, PrefixHasTheOrderOfTheCollation) {
  const char* words[] = {" a",       "a",         "a'",       "a-b", "ab",
                         "abcdefgh", "abcdefghi", "abcdefgz", "b",   "\xE9"};
  for (const char* first : words) {
    for (const char* second : words) {
      const WmLocalWord a(first, 1);
      const WmLocalWord b(second, 1);
      const int quick =
          compareWords(wordPrefix(a.word()), a.word(), wordPrefix(b.word()), b.word());
      const int exact = WmWord::cmp(a.word(), b.word());
      EXPECT_EQ(quick < 0, exact < 0) << first << ' ' << second;
      EXPECT_EQ(quick > 0, exact > 0) << first << ' ' << second;
    }
  }
}

TEST_F(IkMergeTest, AllocsizeIsAPowerOfTwoUpToItsLimit) {
  for (std::size_t size : {1, 3, 255, 256, 257, 513, 0xFFFF, 0x10001, 0x1000000}) {
    EXPECT_EQ(IkIndexer::allocsize(size), std::bit_ceil(size)) << size;
  }
  EXPECT_EQ(thrownBy([] { IkIndexer::allocsize(0x1000001); }), "Fatal: bobo size calculation");
}

// An indexer that compiles nothing, so that its temporary files can be read.
class Accumulator : public IkIndexer {
 public:
  using IkIndexer::IkIndexer;
  void compileIndex(NameManager*, IkMerger*) override { ++compiled; }
  int compiled = 0;
};

TEST_F(IkMergeTest, TableIsWrittenAtTheFirstTermOfTheNextChunk) {
  const std::string root = path("acc");
  Accumulator accumulator(root.c_str());
  accumulator.recordProximity(0);
  // 32 bytes are counted for a word of up to 15 letters: 131,073 of them pass the
  // limit, all in chunk 0.
  for (int i = 0; i < 140000; ++i) {
    accumulator.addTerm(WmLocalWord(("w" + std::to_string(i)).c_str()).word(), 0, i);
  }
  EXPECT_FALSE(std::filesystem::exists(root + ".tmp000"));
  const WmLocalWord shared("shared");
  for (int i = 0; i < 3; ++i) accumulator.addTerm(shared.word(), 1, i);
  accumulator.makeIndex();
  EXPECT_EQ(accumulator.compiled, 1);
  EXPECT_EQ(accumulator.info().totalNumChunks, 2);
  const std::string all = merged({root + ".tmp000", root + ".tmp001"}, 2000);
  EXPECT_NE(all.find("shared S 1*3\n"), std::string::npos);
  EXPECT_NE(merged({root + ".tmp000"}, 2000).find("shared S 1*1\n"), std::string::npos);
  EXPECT_EQ(merged({root + ".tmp001"}, 2000), "shared S 1*2\n");
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 140001);
}

TEST_F(IkMergeTest, WhatMakesAnIndexOfAnEmptyTable) {
  const std::string root = path("last");
  Accumulator accumulator(root.c_str());
  accumulator.recordProximity(0);
  accumulator.makeIndexOfRun();
  accumulator.addTerm(WmLocalWord("").word(), 2, 0);
  accumulator.flushTempfiles();
  accumulator.makeIndexOfRun();
  EXPECT_EQ(accumulator.compiled, 0);
  accumulator.addTerm(WmLocalWord("only").word(), 3, 0);
  EXPECT_EQ(accumulator.info().totalNumChunks, 4);
  accumulator.flushTempfiles();
  accumulator.makeIndex();
  EXPECT_EQ(accumulator.compiled, 0);
  accumulator.makeIndexOfRun();
  EXPECT_EQ(accumulator.compiled, 1);
}

TEST_F(IkMergeTest, TempfilesIntoOne) {
  IkTempfileMerger merger(6);
  merger.addTempfile(write("t0", {{"all", {{0, 2}, {1, 1}}}, {"bee", {{1, 130}}}}).c_str());
  merger.addTempfile(path("absent").c_str());
  merger.addTempfile(write("t1", {{"all", {{1, 1}, {4, 1}}}, {"cat", {{5, 1}}}}).c_str());
  merger.merge(path("one").c_str());
  EXPECT_EQ(
      bytesOf(path("one")),
      bytesOf(write("wanted",
                    {{"all", {{0, 2}, {1, 2}, {4, 1}}}, {"bee", {{1, 130}}}, {"cat", {{5, 1}}}})));
}

TEST_F(IkMergeTest, ExplicitTempfiles) {
  const std::string odd = write("odd", {{"word", {{0, 1}}}});
  Accumulator accumulator(path("explicit").c_str());
  accumulator.addTempfile(path("absent").c_str());
  accumulator.makeIndexExplicitTempfiles();
  EXPECT_EQ(accumulator.compiled, 0);
  EXPECT_EQ(thrownBy([&] { accumulator.addTempfile(odd.c_str()); }),
            "Ik: Filename does not contain .tmp");
  accumulator.recordProximity(0);
  accumulator.addTempfile(odd.c_str());
  accumulator.makeIndexExplicitTempfiles();
  EXPECT_EQ(accumulator.compiled, 1);
}

TEST_F(IkMergeTest, CountsAndLongWords) {
  const std::string root = path("long");
  const std::string longWord(62, 'z');
  Accumulator accumulator(root.c_str());
  accumulator.recordProximity(0);
  for (int chunk : {0, 1, 5}) {
    for (int i = 0; i < 40000; ++i) accumulator.addTerm(WmLocalWord("often").word(), chunk, i);
    accumulator.addTerm(WmLocalWord(longWord.c_str()).word(), chunk, 40000);
    accumulator.addTerm(WmLocalWord(longWord.substr(1).c_str()).word(), chunk, 40001);
  }
  accumulator.makeIndex();
  EXPECT_EQ(merged({root + ".tmp000"}, 1000), "often S 0*32767 1*32767 5*32767\n" +
                                                  longWord.substr(1) + " S 0*1 1*1 5*1\n" +
                                                  longWord + " S 0*1 1*1 5*1\n");
}

}  // namespace
}  // namespace vandrelle
