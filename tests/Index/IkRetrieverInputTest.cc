#include "Index/IkRetrieverInput.h"

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

  // Words go over, through a bag those outside of virtual terms only.
  const std::unique_ptr<FdBag> bag(input.weightedTerms());
  bag->insert(kPear.word(), kPear->num_bytes(), nullptr, 0);  // without data
  const std::unique_ptr<FdIterator> words(bag->iterator());
  IkRetrieverInput other;
  other.add(words.get());
  other.add(input);
  EXPECT_EQ(other.numTerms(), 3);
  EXPECT_EQ(other.term(*kApple)->weight, 7.0f);
  EXPECT_EQ(other.term(*kPear)->weight, 3.25f);
}

TEST(IkCreateMasks, KnowsTheUnsatisfiableAndItsLimit) {
  IkRetrieverInput input;
  input.add(kApple.word(), 1.0f);
  for (auto operation : {2, 5, 2, 3}) input.pushOperation({operation, 0});
  IkRetrieverBooleanMask* masks = nullptr;
  int count = -1;
  IkCreateMasks(input, masks, count);
  delete[] masks;
  EXPECT_EQ(count, 0);
  for (int i = 1; i <= kMaxMaskTerms; ++i) {
    input.add(WmLocalWord(std::to_string(i).c_str()).word(), 1.0f);
  }
  EXPECT_NE(thrownBy([&] { IkCreateMasks(input, masks, count); }), "");
}

}  // namespace
}  // namespace vandrelle
