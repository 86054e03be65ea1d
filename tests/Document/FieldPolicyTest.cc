#include "Document/DcFieldParser.h"
#include "DocumentFixture.h"
#include "Fun/FdBag.h"

namespace vandrelle {
namespace {

TEST(DcFieldParser, WeightsOfFieldTexts) {
  DcFieldParser parser;
  parser.AddFieldToBeIndexed("once", 1);
  parser.AddFieldToBeIndexed("twice", 2);
  parser.AddFieldToBeIndexed("never", 0);
  EXPECT_EQ(taken(parser.getFieldText("once", "a b")), "a b");
  EXPECT_EQ(taken(parser.getFieldText("twice", "a b")), "a b a b ");
  EXPECT_EQ(taken(parser.getFieldText("never", "a b")), "");
  EXPECT_EQ(taken(parser.getFieldText("other", "a b")), "(null)");
  // A filter of the field database may answer null.
  EXPECT_EQ(taken(parser.getFieldText("twice", nullptr)), "(null)");
  parser.AddFieldToBeIndexed("::all", 5);
  EXPECT_EQ(taken(parser.getFieldText("twice", "a b")), "a b");
  EXPECT_EQ(taken(parser.getFieldText("other", "a b")), "a b");
}

TEST(DcFieldParser, ConstraintFields) {
  DcFieldParser parser;
  EXPECT_FALSE(parser.hasConstraintFields());
  parser.AddConstraintField("section");
  EXPECT_TRUE(parser.ConstraintField("section"));
  EXPECT_FALSE(parser.ConstraintField("sect"));
  EXPECT_FALSE(parser.ConstraintField("sections"));
  parser.AddConstraintField("::all");
  EXPECT_TRUE(parser.ConstraintField("anything"));
  const std::unique_ptr<FdBag> values(parser.getFieldValues("section", "One value"));
  EXPECT_EQ(values->numElements(), 1);
  EXPECT_TRUE(values->find("One value", 10, nullptr, nullptr));
}

}  // namespace
}  // namespace vandrelle
