#include "Index/IkRetrieverInput.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "IkTestTools.h"
#include "Index/IkRetrieverBooleanMask.h"

namespace vandrelle {
namespace {

const WmLocalWord kApple("apple");
const WmLocalWord kPear("pear");

TEST(IkRetrieverInput, NumbersItsTerms) {
  IkRetrieverInput input;
  input.add(kApple.word(), 1.5f);
  IkRetrieverInput::TermData* several = input.newVirtualTerm();
  input.addVirtual(several->number, kApple.word(), 0.0f);
  input.addVirtual(several->number, kPear.word(), 0.25f);
  input.addVirtual(0, kPear.word(), 1.0f);   // no virtual term
  input.addVirtual(77, kPear.word(), 1.0f);  // no term
  EXPECT_EQ(input.newTrueTerm()->number, 4);
  input.add(kApple.word(), 2.0f);
  input.add(kPear.word(), 1.0f);
  EXPECT_EQ(input.numTerms(), 6);
  EXPECT_EQ(input.term(*kApple)->weight, 3.5f);
  EXPECT_EQ(input.term(*kPear)->number, 5);
  EXPECT_EQ(input.term(3)->weight, 0.25f);
  EXPECT_EQ(*(*several->elem)[1], 3);

  // A record made ahead is the term that gets its number.
  IkRetrieverInput::TermData* ahead = input.term(6);
  EXPECT_EQ(input.numTerms(), 6);
  EXPECT_EQ(input.term(*WmLocalWord("plum")), ahead);

  // Only words outside of virtual terms go over, through a bag and directly.
  const std::unique_ptr<FdBag> bag(input.weightedTerms());
  bag->insert(kPear.word(), kPear->num_bytes(), nullptr, 0);  // without data
  const std::unique_ptr<FdIterator> words(bag->iterator());
  IkRetrieverInput other;
  other.add(words.get());
  other.add(input);
  EXPECT_EQ(other.numTerms(), 3);
  EXPECT_EQ(other.term(*kApple)->weight, 7.0f);
  EXPECT_EQ(other.term(*kPear)->weight, 3.0f);
}

TEST(IkCreateMasks, MergesDownToTwoAndKnowsItsLimit) {
  IkRetrieverInput input;
  for (const char* word : {"a", "b", "c"}) input.add(WmLocalWord(word).word(), 1.0f);
  const auto masksOf = [&input](std::vector<IkRetrieverInput::Operation> operations) {
    for (const auto& operation : operations) input.pushOperation(operation);
    IkRetrieverBooleanMask* masks = nullptr;
    int count = 0;
    IkCreateMasks(input, masks, count);
    std::string text;
    for (int i = 0; i < count; ++i) {
      text += std::to_string(masks[i].require_) + "-" + std::to_string(masks[i].disallow_) + " ";
    }
    delete[] masks;
    return text;
  };
  // 4, 5 and 6, 7 become one each, and 2 are few enough.
  EXPECT_EQ(masksOf({{2, 2}}), "4-2 6-0 ");
  EXPECT_EQ(masksOf({{5, 0}, {2, 2}, {3, 0}}), "");
  for (int i = 3; i <= kMaxMaskTerms; ++i) {
    input.add(WmLocalWord(std::to_string(i).c_str()).word(), 1.0f);
  }
  EXPECT_NE(thrownBy([&] { masksOf({}); }), "");
}

}  // namespace
}  // namespace vandrelle
