#include "Index/IkRetrieverInput.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "Fun/Fd.h"
#include "IkTestTools.h"
#include "Index/IkRetrieverBooleanMask.h"
#include "Tool/HeapText.h"

namespace vandrelle {
namespace {

const WmLocalWord kApple("apple");
const WmLocalWord kPear("pear");

TEST(IkRetrieverInput, NumbersItsTerms) {
  IkRetrieverInput input;
  input.add(kApple.word(), 1.5f);
  IkRetrieverInput::TermData* concept_ = input.newVirtualTerm();
  input.addVirtual(concept_->number, kApple.word(), 0.0f);
  input.addVirtual(concept_->number, kPear.word(), 0.25f);
  input.addVirtual(0, kPear.word(), 1.0f);   // no virtual term
  input.addVirtual(77, kPear.word(), 1.0f);  // no term
  EXPECT_EQ(input.newTrueTerm()->number, 4);
  input.add(kApple.word(), 2.0f);
  input.add(kPear.word(), 1.0f);
  EXPECT_EQ(input.numTerms(), 6);
  EXPECT_EQ(input.term(*kApple)->weight, 3.5f);
  EXPECT_EQ(input.term(*kPear)->number, 5);
  EXPECT_EQ(input.term(3)->weight, 0.25f);
  EXPECT_EQ(concept_->elem->numElements(), 2);
  EXPECT_EQ(*(*concept_->elem)[1], 3);

  // A record made ahead is the term that gets its number.
  IkRetrieverInput::TermData* ahead = input.term(6);
  EXPECT_EQ(input.numTerms(), 6);
  EXPECT_EQ(input.term(*WmLocalWord("plum")), ahead);

  // Only words outside of virtual terms go over.
  IkRetrieverInput other;
  other.add(input);
  other.add(input);
  EXPECT_EQ(other.numTerms(), 3);
  EXPECT_EQ(other.term(*kApple)->weight, 7.0f);
  EXPECT_EQ(other.term(*kPear)->weight, 2.0f);
}

TEST(IkRetrieverInput, TakesAndGivesBagsOfWords) {
  const std::unique_ptr<FdBag> bag(Fd::Queue());
  const float half = 0.5f;
  bag->insert(kApple.word(), kApple->num_bytes(), &half, 4);
  bag->insert(kPear.word(), kPear->num_bytes(), nullptr, 0);
  const std::unique_ptr<FdIterator> words(bag->iterator());
  IkRetrieverInput input;
  input.add(words.get());
  EXPECT_EQ(input.term(*kApple)->weight, 0.5f);
  EXPECT_EQ(input.term(*kPear)->weight, 1.0f);

  const std::unique_ptr<FdBag> weighted(input.weightedTerms());
  const std::unique_ptr<FdIterator> again(weighted->iterator());
  IkRetrieverInput copy;
  copy.add(again.get());
  EXPECT_EQ(copy.term(0)->weight, 0.5f);
  EXPECT_EQ(copy.numTerms(), 2);
}

// One operation after the other on a plain stack of ints.
bool truthOf(const std::vector<IkRetrieverInput::Operation>& operations,
             const std::vector<bool>& terms) {
  std::vector<bool> stack = {true};
  for (const auto& [type, operand] : operations) {
    if (type == 1) stack.push_back(true);
    if (type == 2) stack.push_back(operand >= 0 && operand < 6 && terms[std::size_t(operand)]);
    if (type == 5) stack.back() = !stack.back();
    if ((type != 3 && type != 4) || stack.size() < 2) continue;
    const bool top = stack.back();
    stack.pop_back();
    stack.back() = type == 3 ? stack.back() && top : stack.back() || top;
  }
  return stack.back();
}

TEST(IkCreateMasks, HoldForWhatTheOperationsHoldFor) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    // Plain words 0 and 2 to 4, a true term 1, a member's virtual term 5.
    IkRetrieverInput input;
    input.add(kApple.word(), 1.0f);
    input.newTrueTerm();
    for (const char* word : {"a", "b", "c"}) input.add(WmLocalWord(word).word(), 1.0f);
    input.newVirtualTerm();
    std::vector<IkRetrieverInput::Operation> operations;
    for (auto i = random() % 12; i > 0; --i) {
      const int type = random() % 2 != 0 ? 2 : static_cast<int>(random() % 7);
      operations.push_back({type, static_cast<int>(random() % 8) - 1});
      input.pushOperation(operations.back());
    }
    IkRetrieverBooleanMask* made = nullptr;
    int numMasks = 0;
    IkCreateMasks(input, made, numMasks);
    const HeapAptr<IkRetrieverBooleanMask> masks(made);
    for (uint32 bits = 0; bits < 16; ++bits) {
      const bool expected = truthOf(operations, {(bits & 1) != 0, true, (bits & 2) != 0,
                                                 (bits & 4) != 0, (bits & 8) != 0, false});
      bool found = false;
      for (int i = 0; i < numMasks; ++i) {
        found |= (bits & masks[std::size_t(i)].require_) == masks[std::size_t(i)].require_ &&
                 (bits & masks[std::size_t(i)].disallow_) == 0;
      }
      ASSERT_EQ(found, expected) << round << " " << bits;
    }
  }
}

TEST(IkCreateMasks, MergesDownToTwoAndKnowsItsLimit) {
  IkRetrieverInput input;
  for (const char* word : {"a", "b", "c"}) input.add(WmLocalWord(word).word(), 1.0f);
  input.pushOperation({IkRetrieverInput::kPushTerm, 2});
  IkRetrieverBooleanMask* masks = nullptr;
  int numMasks = 0;
  IkCreateMasks(input, masks, numMasks);
  // 4, 5 and 6, 7 have become one each, and 2 are few enough.
  ASSERT_EQ(numMasks, 2);
  EXPECT_EQ(masks[0].require_, 4u);
  EXPECT_EQ(masks[0].disallow_, 2u);
  EXPECT_EQ(masks[1].require_, 6u);
  EXPECT_EQ(masks[1].disallow_, 0u);
  delete[] masks;
  input.pushOperation({IkRetrieverInput::kNot, 0});
  input.pushOperation({IkRetrieverInput::kPushTerm, 2});
  input.pushOperation({IkRetrieverInput::kAnd, 0});
  IkCreateMasks(input, masks, numMasks);
  EXPECT_EQ(numMasks, 0);
  delete[] masks;
  for (int i = 3; i <= kMaxMaskTerms; ++i) {
    input.add(WmLocalWord(std::to_string(i).c_str()).word(), 1.0f);
  }
  EXPECT_NE(thrownBy([&] { IkCreateMasks(input, masks, numMasks); }), "");
}

}  // namespace
}  // namespace vandrelle
