#include "Index/IkMergeIndex.h"

#include "IkMergeText.h"
#include "IkTinyIndex.h"
#include "Index/IkMergeDeleter.h"

namespace vandrelle {
namespace {

const IkTinyWords kWords = {{"ash", {{0, {1, 300}}, {2, {0, 4}}}},
                            {"beech", {{1, {3}}}},
                            {"oak", {{0, {0}}, {1, {1}}, {2, {9, 10, 11}}}}};

// Chunk 1 goes; 2 becomes 1.
class OmitsChunkOne : public IkMergeDeleter {
 public:
  int newChunk(int chunk) override { return chunk == 1 ? kGone : chunk / 2; }
  int numDeletedChunks() override { return 1; }
};

class ExcludesAsh : public IkMergeIndexExcluder {
 public:
  int excludes(const WmWord* word) override { return *word == *WmLocalWord("ash").word(); }
};

const std::string kNone("\xFF\xFF\xFF\xFF", 4);
std::string number(char n) { return std::string(3, '\0') + n; }

TEST(IkMergeIndex, MovesChunksAndCopiesPositions) {
  const std::string root = writeTinyIndex("source", 3, kWords);
  const std::string side = testing::TempDir() + "source.side";
  const std::string prox = testing::TempDir() + "target.prx";
  OmitsChunkOne omits;
  ExcludesAsh excludes;
  const struct {
    const char* what;
    IkMergeDeleter* deleter;
    IkMergeIndexExcluder* excluder;
    const char* deleted;  // bits of the deletion vector
    std::string content;
    std::string side;
    std::string prox;
  } cases[] = {
      {"all", nullptr, nullptr, nullptr, "ash: 10/2 12/2; beech: 11/1; oak: 10/1 11/1 12/3; ",
       number(0) + number(1) + number(2), std::string("\1\xAB\2\0\4\3\0\1\x9\1\1", 11)},
      {"without a chunk", &omits, nullptr, nullptr, "ash: 10/2 11/2; beech:; oak: 10/1 11/3; ",
       number(0) + kNone + number(1), std::string("\1\xAB\2\0\4\0\x9\1\1", 9)},
      {"without a word", nullptr, &excludes, nullptr, "beech: 11/1; oak: 10/1 11/1 12/3; ",
       kNone + number(0) + number(1), std::string("\3\0\1\x9\1\1", 6)},
      {"with a deleted chunk", nullptr, nullptr, "\x80", "ash: 12/2; beech: 11/1; oak: 11/1 12/3; ",
       number(0) + number(1) + number(2), std::string("\0\4\3\1\x9\1\1", 7)},
  };
  for (const auto& c : cases) {
    if (c.deleted != nullptr) {
      writeBytes(root + ".xk", std::string("\0\0\0\3\0\0\0\1", 8) + c.deleted);
    }
    for (bool dense : {false, true}) {
      {
        IkMergeIndex index(root.c_str(), side.c_str(), 1);
        index.offset(10);
        index.deleter(c.deleter);
        index.excluder(c.excluder);
        IkProxCreator positions(prox.c_str());
        EXPECT_EQ(contentOf(&index, dense, &positions), c.content) << c.what;
      }
      EXPECT_EQ(bytesOf(side), c.side) << c.what;
      EXPECT_EQ(bytesOf(prox), c.prox) << c.what;
    }
  }
}

TEST(IkMergeIndex, RefusesChunksOutsideOfItsRows) {
  const std::string root = writeTinyIndex("outside", 3, kWords);
  IkMergeIndex index(root.c_str(), nullptr, 0);
  index.offset(1);
  index.reset();
  index.word();
  index.maxElements();
  int row[3] = {};
  int count = 0;
  EXPECT_EQ(thrownBy([&] { index.unpack(row, 3, &count, nullptr); }),
            "Ik: IkMergeIndexUnpacker:: document too large for row");

  // The header says less documents than the rows have.
  IkIndexInfo info;
  info.totalNumChunks = 2;
  info.write((root + ".info").c_str());
  IkMergeIndex damaged(root.c_str(), nullptr, 0);
  damaged.word();
  damaged.maxElements();
  IkDocumentInfo pairs[8];
  EXPECT_NE(thrownBy([&] { damaged.unpackSparse(pairs, &count, nullptr); }), "");
  EXPECT_EQ(thrownBy([&] { IkMergeIndex side(root.c_str(), "/nowhere/side", 0); }),
            "Ik: Couldn't open /nowhere/side");
}

}  // namespace
}  // namespace vandrelle
