#include "Document/DocumentFixture.h"
#include "DocumentImpl/DiHelperDistributor.h"
#include "DocumentImpl/DiRenameFileHandler.h"

namespace vandrelle {
namespace {

class HelperTest : public DocumentFixture {};

TEST_F(HelperTest, TypesShareHelpersByNumber) {
  DiHelperDistributor distributor("root");
  EXPECT_EQ(distributor.helpers(1)->lexer, distributor.helpers(15)->lexer);
  EXPECT_EQ(distributor.helpers(10)->headerParser, distributor.helpers(14)->headerParser);
  EXPECT_NE(distributor.helpers(2)->headerParser, distributor.helpers(6)->headerParser);
  EXPECT_EQ(distributor.helpers(1)->headerParser, nullptr);
  EXPECT_EQ(distributor.helpers(1)->handler, distributor.helpers(2)->handler);
  for (const int type : {-5, 0, 17, 63, 64, 2047, 40000}) {
    EXPECT_EQ(distributor.helpers(type)->lexer, nullptr) << type;
    EXPECT_NE(distributor.helpers(type)->handler, nullptr) << type;
    EXPECT_EQ(distributor.multiDocFiles(type), 1) << type;
  }
}

TEST_F(HelperTest, RenamesOnlyWhatWasRead) {
  const std::string added = write("added", "x");
  const std::string read = write("it's read; really", "x");
  {
    DiRenameFileHandler handler(".ix");
    handler.Close(handler.Open(added.c_str()));
    handler.setMode(1);
    for (int twice = 0; twice < 2; ++twice) handler.Close(handler.Open(read.c_str()));
    EXPECT_EQ(handler.Open(path("missing").c_str()), nullptr);
    EXPECT_TRUE(std::filesystem::exists(read));
  }
  EXPECT_TRUE(std::filesystem::exists(added));
  EXPECT_FALSE(std::filesystem::exists(read));
  EXPECT_TRUE(std::filesystem::exists(read + ".ix"));
}

}  // namespace
}  // namespace vandrelle
