#include "Index/IkSimilarity.h"

#include <cmath>

#include "IkTestTools.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIdfCreator.h"

namespace vandrelle {
namespace {

IkIndexInfo infoOf(int chunks, int deleted) {
  IkIndexInfo info;
  info.totalNumChunks = chunks;
  info.numDeletedChunks = deleted;
  info.minDocumentLength = 400.0f;
  return info;
}

TEST(IkSimilarity, IdfCountsLiveDocumentsAndInverts) {
  const IkIndexInfo info = infoOf(1010, 10);
  IkSimilarity sim;
  sim.bind(&info);
  EXPECT_EQ(sim.IDF(1), static_cast<float>(std::log(1001.0)));
  EXPECT_EQ(sim.IDF(1001), 0.0f);
  // The table and the formula agree across the end of the table.
  for (int df : {15, 16}) {
    const float quotient = 1001.0f / static_cast<float>(df);
    EXPECT_EQ(sim.IDF(df), static_cast<float>(std::log(static_cast<double>(quotient)))) << df;
  }
  for (int df = 1; df <= 1001; ++df) ASSERT_EQ(sim.InverseIDF(sim.IDF(df)), df);
  EXPECT_EQ(sim.InverseIDF(100.0f), 0);
  EXPECT_EQ(sim.InverseIDF(-100.0f), 0x7fffffff);
}

TEST(IkSimilarity, NormBytesAndFrequencyLimits) {
  const IkIndexInfo info = infoOf(1000, 0);
  IkSimilarity sim;
  sim.bind(&info);
  struct {
    float length;
    int byte;
  } const cases[] = {{0, 0},     {-1, 0},    {1, 255},    {100, 255},
                     {400, 255}, {401, 254}, {1600, 127}, {1e12f, 0}};
  for (const auto& c : cases) EXPECT_EQ(sim.Norm2Byte(c.length), c.byte) << c.length;

  EXPECT_EQ(sim.tfLimits[0], 65535);
  EXPECT_EQ(sim.tfLimits[1], 65535);
  EXPECT_EQ(sim.tfLimits[255], 5);  // 400 characters are 57 words
  EXPECT_EQ(sim.TF(3, 255), std::sqrt(3.0f));
  EXPECT_EQ(sim.TF(900, 255), std::sqrt(5.0f));
  EXPECT_EQ(sim.TF(900, 1), 30.0f);
  EXPECT_EQ(sim.NormalizedTF(1, 255), sim.normDecoder[255]);
  EXPECT_EQ(sim.NormalizedTF(4, 127), 2.0f * sim.normDecoder[127]);
}

// A document so short that the density limit is below one occurrence.
TEST(IkSimilarity, TooShortDocumentsCannotScore) {
  IkIndexInfo info = infoOf(1000, 0);
  info.minDocumentLength = 60.0f;
  IkSimilarity sim;
  sim.bind(&info);
  EXPECT_EQ(sim.tfLimits[255], 0);
  EXPECT_EQ(sim.NormalizedTF(1, 255), 0.0f);
}

TEST(IkIdf, ABytePerWordRoundedDown) {
  const std::string path = testing::TempDir() + "words.idf";
  const IkIndexInfo info = infoOf(1000, 0);
  IkSimilarity sim;
  sim.bind(&info);
  {
    IkIdfCreator creator(&info, path.c_str());
    for (int df : {1, 2, 10, 500, 1000}) creator.add(sim.IDF(df));
  }
  // 255 is ln 1001, so that ln 500.5 is 229.4, ln 100.1 170.01, and so on.
  const std::string expected("\xFF\xE5\xAA\x19\0", 5);
  EXPECT_EQ(bytesOf(path), expected);

  IkIdfBinder binder(&info, path.c_str());
  EXPECT_EQ(binder.df(0), 1);
  EXPECT_EQ(binder.df(1), 2);
  EXPECT_EQ(binder.df(4), 1001);
  for (unsigned word = 0; word < 4; ++word) {
    const float step = sim.IDF(1) / 255.0f;
    EXPECT_EQ(binder.idf(word),
              static_cast<float>(static_cast<unsigned char>(expected[word])) * step);
  }
  EXPECT_NE(thrownBy([&] { binder.idf(5); }), "");
}

TEST(IkIdf, AnIndexWithoutWords) {
  const std::string path = testing::TempDir() + "none.idf";
  const IkIndexInfo info;
  { IkIdfCreator creator(&info, path.c_str()); }
  IkIdfBinder binder(&info, path.c_str());
  EXPECT_NE(thrownBy([&] { binder.df(0); }), "");
}

}  // namespace
}  // namespace vandrelle
