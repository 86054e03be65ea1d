#include <vector>

#include "Document/DcFieldBag.h"
#include "Document/DcFieldFinder.h"
#include "Document/DcFieldParser.h"
#include "DocumentFixture.h"
#include "Fun/FdBag.h"
#include "Fun/FdStream.h"

namespace vandrelle {
namespace {

std::vector<std::string> keys(FdStream* stream) {
  const std::unique_ptr<FdStream> owner(stream);
  std::vector<std::string> all;
  for (stream->reset(); stream->more(); stream->next()) {
    all.push_back(static_cast<const char*>(stream->key()));
  }
  return all;
}

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
  EXPECT_EQ(keys(values->iterator()), (std::vector<std::string>{"One value"}));
}

// Answers every question for a header with its name.
class EchoParser : public DiHeaderParser {
 public:
  char* getHeader(DcHeaderDocument*, const char* header) override { return copyText(header); }
  int FindEndOfHeaders(std::ifstream*, long) override { return 0; }
  char* getStreamHeaders(DcHeaderDocument*) override { return nullptr; }
  int headerPolicy() override { return 0; }
};

class KnowingFinder : public DcFieldFinder {
 public:
  char* getSpecialField(DcDocument*, const char*, const char* field) override {
    return std::string(field) == "known" ? copyText("special") : nullptr;
  }
};

TEST(DcFieldFinder, SpecialFieldsBeforeHeaders) {
  EchoParser parser;
  DcMiniHeaderDocument document(&parser, nullptr, 0, 0, 0, 0, nullptr);
  DcFieldFinder plain;
  KnowingFinder knowing;
  EXPECT_EQ(taken(plain.getField(&document, "root", "known")), "known");
  EXPECT_EQ(taken(knowing.getField(&document, "root", "known")), "special");
  EXPECT_EQ(taken(knowing.getField(&document, "root", "other")), "other");
  EXPECT_EQ(taken(knowing.getField(nullptr, "root", "other")), "(null)");
}

}  // namespace
}  // namespace vandrelle
