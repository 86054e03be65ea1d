#include "Fun/FdBag.h"

#include <gtest/gtest.h>

#include <sstream>

#include "Fun/FdQueue.h"
#include "Fun/FdStack.h"
#include "Fun/FdTable.h"
#include "Fun/FdWrapper.h"
#include "ThrownBy.h"

namespace vandrelle {
namespace {

std::string keysOf(FdBag* bag) {
  std::string keys;
  for (FdSStream walk(bag->iterator()); walk.more(); walk.next()) {
    keys += walk.key();
    keys += ' ';
  }
  return keys;
}

int backwards(const void* a, int, const void* b, int) {
  return std::strcmp(static_cast<const char*>(b), static_cast<const char*>(a));
}

TEST(FdQueue, TailFollowsEveryRemoval) {
  FdQueue queue;
  FdSBag names(&queue, 0);
  for (const char* name : {"a", "b", "c"}) names.insert(name);
  EXPECT_TRUE(names.remove("c"));
  names.insert("d");
  EXPECT_EQ(keysOf(&queue), "a b d ");
  for (const char* name : {"b", "d", "a"}) EXPECT_TRUE(names.remove(name));
  EXPECT_TRUE(queue.isEmpty());
  names.insert("e");
  names.insert("c");
  queue.sort(backwards, 0);
  names.insert("z");
  EXPECT_EQ(keysOf(&queue), "e c z ");
  while (queue.getnext(nullptr, nullptr, nullptr, nullptr) == 1) {
  }
  names.insert("f");
  EXPECT_EQ(keysOf(&queue), "f ");
}

TEST(FdBag, HashShiftsBitsAndTakesSignedBytes) {
  struct Open : FdStack {
    using FdStack::hash;
  } bag;
  EXPECT_EQ(bag.hash("", 0), 0);
  EXPECT_EQ(bag.hash("ssss", 4), ('s' << 3) ^ ('s' << 2) ^ ('s' << 1) ^ 's');
  EXPECT_EQ(bag.hash("abcde", 5),
            (('a' << 3) ^ ('b' << 2) ^ ('c' << 1) ^ 'd' ^ ('e' << 3)) & 0xfff);
  EXPECT_EQ(bag.hash("\xff", 1), 0xff8);
}

TEST(FdBag, SizesAreBounded) {
  FdQueue queue;
  const std::string fits(4091, 'k');
  FdSBag names(&queue, 0);
  names.insert(fits.c_str());
  EXPECT_TRUE(names.find(fits.c_str()));
  EXPECT_EQ(thrownBy([&] { names.insert((fits + "k").c_str()); }),
            "FdPair: A key of 4093 bytes does not fit a pair; use at most 4092.");
  EXPECT_EQ(thrownBy([&] { queue.insert("k", 2, fits.c_str(), 4093); }),
            "FdPair: Data of 4093 bytes do not fit a pair; use at most 4092.");
  EXPECT_EQ(thrownBy([&] { queue.insert(nullptr, 4, nullptr, 0); }),
            "FdPair: Pair initialized with NULL key pointer");
  EXPECT_EQ(queue.numElements(), 1);
}

TEST(FdBag, CopiesNoMoreThanThereIsRoomFor) {
  FdStack stack;
  const std::uint16_t number = 0x1234;
  stack.insert("k", 2, &number, sizeof number);
  unsigned char room[4] = {9, 9, 9, 9};
  int size = sizeof room;
  ASSERT_TRUE(stack.find("k", 2, room, &size));
  EXPECT_EQ(size, 4);     // counted in words
  EXPECT_EQ(room[2], 9);  // but not written
  unsigned char one[1] = {0};
  size = 1;
  ASSERT_TRUE(stack.find("k", 2, one, &size));  // under the sanitizer: no overrun
  size = 77;
  EXPECT_FALSE(stack.find("q", 2, room, &size));
  EXPECT_EQ(size, 77);
}

TEST(FdTable, ReplacesAndCounts) {
  FdSCBag<int> table(new FdTable(16));
  for (int i = 0; i < 200; ++i) table.insert(std::to_string(i % 50).c_str(), i);
  EXPECT_EQ(table.numElements(), 50);
  int data = 0;
  ASSERT_TRUE(table.find("7", data));
  EXPECT_EQ(data, 157);
  // Data of another size take the place, too.
  table.bag()->insert("7", 2, "longer than an int", 19);
  EXPECT_EQ(table.numElements(), 50);
  char text[32];
  int size = sizeof text;
  ASSERT_TRUE(table.bag()->find("7", 2, text, &size));
  EXPECT_STREQ(text, "longer than an int");
  EXPECT_NE(thrownBy([&] { table.bag()->insert("7", 2, text, 4093); }), "");
  EXPECT_TRUE(table.remove("7"));
  EXPECT_FALSE(table.remove("7"));
  int sum = 0;
  for (FdSCStream<int> walk(table.iterator()); walk.more(); walk.next()) sum += walk.data();
  EXPECT_EQ(sum, (150 + 199) * 25 - 157);
}

TEST(FdTable, WrittenFormIsARunOfPairs) {
  FdTable table(128);  // 64 buckets
  table.insert("ssss", 4, "0123456789ab", 12);
  std::ostringstream os;
  os << &table;
  const int hash = 0x2c1;  // 115 << 3 ^ 115 << 2 ^ 115 << 1 ^ 115
  const std::string expected = {static_cast<char>(hash >> 4), static_cast<char>((hash & 15) << 4),
                                static_cast<char>(1 << 10 >> 8), 3};
  EXPECT_EQ(os.str(), expected + "ssss0123456789ab" + std::string(4, '\0'));

  table.insert("", 0, nullptr, 0);
  table.insert("odd", 4, "xyz", 3);
  std::stringstream written;
  written << &table;
  FdTable copy(4);
  written >> &copy;
  EXPECT_EQ(copy.numElements(), 3);
  char data[4];
  int size = sizeof data;
  EXPECT_TRUE(copy.find("", 0, nullptr, nullptr));
  ASSERT_TRUE(copy.find("odd", 4, data, &size));
  EXPECT_EQ(std::string(data, 4), std::string("xyz\0", 4));

  // A stream that breaks off anywhere gives what was whole: pairs of 4, 20 and 12
  // bytes, in the order of their buckets.
  const std::string whole = written.str();
  ASSERT_EQ(whole.size(), 40u);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    std::istringstream cut(whole.substr(0, length));
    FdTable partial;
    cut >> &partial;
    EXPECT_EQ(partial.numElements(), (length >= 4) + (length >= 24) + (length >= 36)) << length;
  }
}

}  // namespace
}  // namespace vandrelle
