#include "Fun/FdMap.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>

#include "Fun/FdRBTree.h"
#include "Fun/FdVector.h"

namespace vandrelle {
namespace {

TEST(FdMap, GrowsWithTheInsertionThatFindsSeventeen) {
  FdSimpleMap<int, int> map;
  for (int i = 0; i < 17; ++i) map.insert(i, i * i);
  EXPECT_EQ(map.numBuckets(), 4);
  map.insert(17, 0);
  EXPECT_EQ(map.numBuckets(), 8);
  for (int i = 0; i < 17; ++i) {
    ASSERT_NE(map.find(i), nullptr);
    EXPECT_EQ(*map.find(i), i * i);
  }
}

TEST(FdMap, HashFoldsBySignificantBits) {
  // 0x01020304 little-endian: bytes 04 03 02 01; 4 buckets have 3 significant bits.
  const unsigned char key[] = {0x04, 0x03, 0x02, 0x01, 0xff};
  std::uint32_t expected = 0x01020304 ^ 0xff;
  for (int shift = 3; shift < 32; shift += 3) expected ^= expected >> shift;
  EXPECT_EQ(FdMapHashImpl(key, 5, 4), static_cast<int>(expected % 4));
  EXPECT_EQ(FdMapHashImpl(key, 0, 4), 0);
}

TEST(FdMap, FollowsAModelThroughInsertsAndRemovals) {
  FdAutoMap<int, std::string> map(1);
  std::map<int, std::string> model;
  std::mt19937 random(7);
  for (int step = 0; step < 4000; ++step) {
    const int key = static_cast<int>(random() % 300) - 150;
    switch (random() % 3) {
      case 0:
        map.insert(key, std::to_string(step));
        model[key] = std::to_string(step);
        break;
      case 1:
        EXPECT_EQ(map.remove(key), model.erase(key) == 1);
        break;
      default:
        EXPECT_EQ(*map[key], model[key]);
        break;
    }
    ASSERT_EQ(map.numElements(), static_cast<int>(model.size()));
  }
  std::map<int, std::string> walked;
  for (auto it = map.iterator(); it.more(); it.next()) walked[it.key()] = it.data();
  EXPECT_EQ(walked, model);
  map.removeAll();
  EXPECT_FALSE(map.iterator().more());
}

TEST(FdMap, MissingKeyWithoutDefaultIsNull) {
  FdSimpleMap<int, int> map;
  EXPECT_EQ(map[3], nullptr);
  EXPECT_EQ(map.numElements(), 0);
}

TEST(FdVector, KeepsOrderAndAddresses) {
  FdVector<std::string> vector;
  EXPECT_EQ(vector.top(), "");
  vector.push("a");
  const std::string* first = vector[0];
  for (int i = 1; i < 100; ++i) vector.push(std::string(1, static_cast<char>('a' + i % 26)));
  EXPECT_EQ(vector[0], first);
  EXPECT_EQ(*vector[27], "b");
  EXPECT_EQ(vector[100], nullptr);
  EXPECT_EQ(vector[-1], nullptr);
  EXPECT_EQ(vector.pop(), "v");
  EXPECT_EQ(vector.numElements(), 99);
}

struct Item {
  int key;
  int data;
  bool operator<(const Item& other) const { return key < other.key; }
};

TEST(FdRBTree, EqualValueTakesThePlace) {
  FdRBTree<Item> tree;
  for (int i = 0; i < 10; ++i) tree.insert({i, 0});
  tree.insert({4, 44});
  EXPECT_EQ(tree.size(), 10);
  EXPECT_TRUE(tree.isBalanced());
  Item asked{4, 0};
  EXPECT_TRUE(tree.load(asked));
  EXPECT_EQ(asked.data, 44);
}

TEST(FdRBTree, StaysBalancedAndSorted) {
  FdRBTree<int> tree;
  std::set<int> model;
  std::mt19937 random(11);
  EXPECT_EQ(tree.top(), nullptr);
  EXPECT_FALSE(tree.removeBot());
  for (int step = 0; step < 6000; ++step) {
    const int value = static_cast<int>(random() % 400);
    if (step % 1000 < 600 ? random() % 4 != 0 : random() % 4 == 0) {
      tree.insert(value);
      model.insert(value);
    } else if (value < 40 && !model.empty()) {
      tree.removeTop();
      model.erase(model.begin());
    } else {
      EXPECT_EQ(tree.remove(value), model.erase(value) == 1);
    }
    ASSERT_TRUE(tree.isBalanced()) << "after step " << step;
    ASSERT_EQ(tree.size(), static_cast<int>(model.size()));
    if (!model.empty()) {
      ASSERT_EQ(*tree.top(), *model.begin());
      ASSERT_EQ(*tree.bot(), *model.rbegin());
    }
  }
  auto expected = model.begin();
  for (auto it = tree.iterator(); it.more(); it.next(), ++expected) EXPECT_EQ(it.data(), *expected);
  EXPECT_EQ(expected, model.end());
}

TEST(FdRBTree, BoundedQueueKeepsTheSmallest) {
  FdRBPairTreeMin<std::string, int> tree;
  for (const char* key : {"pear", "fig", "plum", "apple", "kiwi"}) {
    tree.insert(key, tree.size());
    if (tree.size() > 3) tree.removeBot();
  }
  std::string keys;
  for (auto it = tree.iterator(); it.more(); it.next()) keys += it.data().key + " ";
  EXPECT_EQ(keys, "apple fig kiwi ");
  int data = -1;
  EXPECT_TRUE(tree.find("fig", data));
  EXPECT_EQ(data, 1);
  EXPECT_EQ(tree.findData("plum"), nullptr);
}

}  // namespace
}  // namespace vandrelle
