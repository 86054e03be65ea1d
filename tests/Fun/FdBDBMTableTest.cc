#include "Fun/FdBDBMTable.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Fun/FdDBMManager.h"
#include "Fun/FdWrapper.h"
#include "ThrownBy.h"

namespace vandrelle {
namespace {

class FdBDBMTableTest : public testing::Test {
 protected:
  FdBDBMTableTest()
      : directory_(std::filesystem::temp_directory_path() /
                   ("fun_test." + std::to_string(getpid()))) {
    std::filesystem::create_directories(directory_);
    name_ = directory_ / "table";
  }
  ~FdBDBMTableTest() override { std::filesystem::remove_all(directory_); }

  std::filesystem::path directory_;
  std::string name_;
};

TEST_F(FdBDBMTableTest, KeepsOneValueAKeyAcrossRuns) {
  for (const bool sorted : {true, false}) {
    SCOPED_TRACE(sorted ? "B-tree" : "hash");
    const char* name = name_.c_str();
    {
      FdSCBag<int> table(sorted ? FdDBMManager::Btree(name, 1) : FdDBMManager::Hash(name, 1));
      EXPECT_TRUE(table.isEmpty());
      const std::unique_ptr<FdIterator> empty(table.iterator());
      EXPECT_FALSE(empty->more());
      for (int i = 0; i < 1000; ++i) table.insert(std::to_string(i % 400).c_str(), i);
      EXPECT_TRUE(table.remove("17"));
      EXPECT_FALSE(table.remove("17"));
    }
    FdSCBag<int> table(FdDBMManager::Bind(name));
    int data = 0;
    EXPECT_TRUE(table.find("199", data));
    EXPECT_EQ(data, 999);
    EXPECT_FALSE(table.find("17", data));
    int count = 0;
    std::string last;
    for (FdSCStream<int> walk(table.iterator()); walk.more(); walk.next()) {
      EXPECT_EQ(std::stoi(walk.key()), walk.data() % 400);
      if (sorted) {
        EXPECT_LT(last, walk.key());
      }
      last = walk.key();
      int ignored = 0;
      table.find("5", ignored);  // a lookup does not disturb the walk
      ++count;
    }
    EXPECT_EQ(count, 399);
    EXPECT_EQ(thrownBy([&] { table.insert("new", 1); }).substr(0, 31),
              "DBM: Couldn't insert data into ");
  }
}

TEST_F(FdBDBMTableTest, OtherFilesAreRefused) {
  std::ofstream(name_) << "no table at all";
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Bind(name_.c_str()); }).substr(0, 4), "DBM:");
}

}  // namespace
}  // namespace vandrelle
