#include "Fun/FdBDBMTable.h"

#include "Fun/FdDBMManager.h"
#include "Fun/FdWrapper.h"
#include "SmallDevice.h"
#include "Storage/StorageTestSupport.h"

namespace vandrelle {
namespace {

class FdBDBMTableTest : public DirectoryTest {
 protected:
  const std::string name_ = directory_ / "table";
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

TEST_F(FdBDBMTableTest, Refusals) {
  writeFile(name_, "no table at all");
  const std::string tree = directory_ / "tree", none = directory_ / "none/t";
  delete FdDBMManager::Btree(tree.c_str(), 1);
  const struct {
    FdBag* (*call)(const char*);
    std::string name, text;
  } cases[] = {
      {FdDBMManager::Bind, name_, "DBM: Failed to initialize DBM table" + name_},
      {FdDBMManager::Bind, none, "DBM: Failed to initialize DBM table" + none},
      {FdDBMManager::Bind, tree, ""},
      {[](const char* name) { return FdDBMManager::Hash(name, 2); }, tree,
       "DBM: Could not bind to table " + tree},
      {[](const char* name) { return FdDBMManager::Btree(name, 0); }, name_,
       "DBM: Could not open table " + name_},
      {[](const char* name) { return FdDBMManager::Hash(name, 1); }, none,
       "DBM: Could not create table " + none},
      {[](const char* name) { return FdDBMManager::Btree(name, 3); }, name_,
       "DBM: Invalid table mode 3"},
      {FdDBMManager::Ndbm, name_,
       "DBMUnimpl: FdBag* FdDBMManager::Ndbm(char*) is unimplemented in this class"},
  };
  testing::internal::CaptureStderr();
  for (const auto& c : cases) {
    EXPECT_EQ(thrownBy([&] { delete c.call(c.name.c_str()); }), c.text);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FdBDBMTableTest, FlushTellsOfAFullDisk) {
  FdBDBMTable* table = static_cast<FdBDBMTable*>(FdDBMManager::Hash(name_.c_str(), 1));
  const std::string data(100, 'x');
  for (int i = 0; i < 1000; ++i) table->insert(&i, sizeof i, data.data(), 100);
  testing::internal::CaptureStderr();  // where the library adds what it knows
  {
    const SmallDevice device(32 * 1024);
    EXPECT_EQ(thrownBy([&] { table->flush(); }), "DBM: Couldn't write " + name_);
  }
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(thrownBy([&] { table->flush(); }), "");
  delete table;
}

}  // namespace
}  // namespace vandrelle
