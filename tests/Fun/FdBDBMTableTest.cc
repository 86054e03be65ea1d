#include "Fun/FdBDBMTable.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Fun/FdDBMManager.h"
#include "Fun/FdException.h"
#include "Fun/FdWrapper.h"

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

  template <typename Action>
  static std::string thrownBy(Action action) {
    ExceptionEnvironment environment;
    if (GUARDED(environment)) {
      action();
      return "nothing";
    }
    environment.restore_env();
    std::unique_ptr<Exception> caught(ExceptionManager::instance()->pop());
    return std::string(caught->name()) + ": " + caught->message();
  }

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

TEST_F(FdBDBMTableTest, ParametersAndListing) {
  {
    FdSBag tree(FdDBMManager::Btree(name_.c_str(), 1, 65536, 4096, 2));
    tree.insert("b");
    tree.insert("a");
  }
  FdSBag tree(FdDBMManager::Btree(name_.c_str(), 0));
  FdBDBMIterator walk(static_cast<FdBDBMTable*>(tree.bag()));
  FdSBag keys(walk.list());
  EXPECT_EQ(keys.numElements(), 2);
  EXPECT_TRUE(keys.find("a"));

  const std::string other = name_ + "2";
  FdSCBag<int> hash(FdDBMManager::Hash(other.c_str(), 1, 1024, 65536, 8));
  hash.insert("x", 1);
  int data = 0;
  EXPECT_TRUE(hash.find("x", data));
}

TEST_F(FdBDBMTableTest, FailuresNameTheTable) {
  const std::string missing = (directory_ / "none" / "table").string();
  const char* name = missing.c_str();
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Btree(name, 0); }),
            "DBM: Could not open table " + missing);
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Hash(name, 1); }),
            "DBM: Could not create table " + missing);
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Btree(name, 2); }),
            "DBM: Could not bind to table " + missing);
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Btree(name, 3); }), "DBM: Invalid table mode 3");
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Bind(name); }),
            "DBM: Failed to initialize DBM table" + missing);
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Ndbm(name); }),
            "DBMUnimpl: FdBag* FdDBMManager::Ndbm(char*) is unimplemented in this class");

  std::ofstream(name_) << "no table at all";
  EXPECT_EQ(thrownBy([&] { FdDBMManager::Bind(name_.c_str()); }).substr(0, 4), "DBM:");
}

}  // namespace
}  // namespace vandrelle
