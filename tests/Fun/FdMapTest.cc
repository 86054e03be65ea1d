#include "Fun/FdMap.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>

#include "Fun/FdRBTree.h"

namespace vandrelle {
namespace {

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

}  // namespace
}  // namespace vandrelle
