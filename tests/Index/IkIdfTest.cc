

#include "IkTestTools.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIdfCreator.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkSimilarity.h"

namespace vandrelle {
namespace {

TEST(IkIdf, ABytePerWordRoundedDown) {
  const std::string path = testing::TempDir() + "words.idf";
  IkIndexInfo info;
  info.totalNumChunks = 1000;
  info.minDocumentLength = 400.0f;
  IkSimilarity sim;
  sim.bind(&info);
  std::string expected;
  {
    IkIdfCreator creator(&info, path.c_str());
    const float factor = 255.0f / sim.IDF(1);
    for (int df : {1, 2, 10, 500, 1000}) {
      creator.add(sim.IDF(df));
      expected += static_cast<char>(static_cast<int>(sim.IDF(df) * factor));
    }
  }
  EXPECT_EQ(bytesOf(path), expected);
  EXPECT_EQ(static_cast<unsigned char>(expected[0]), 255);
  EXPECT_EQ(expected[4], 0);

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
