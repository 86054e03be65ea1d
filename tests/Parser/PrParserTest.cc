#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "Parser/PrArgParser.h"
#include "Parser/PrManager.h"
#include "Parser/PrNodeCreator.h"
#include "Parser/PrParserImpl.h"
#include "Parser/PrParserNode.h"
#include "ThrownBy.h"
#include "Token.h"
#include "Word.h"

namespace vandrelle {
namespace {

// Its text is the expression that made it.
class TextNode final : public PrParserNode {
 public:
  explicit TextNode(std::string expression) : text(std::move(expression)) { ++live; }
  ~TextNode() override { --live; }
  int next(int*, float*) override { return 0; }

  const std::string text;
  static int live;
};
int TextNode::live = 0;

std::string textOf(const PrArgStruct& arg) {
  if (arg.type == PrArgStruct::kString) return "'" + std::string(arg.string) + "'";
  const auto* node = arg.type == PrArgStruct::kNode ? dynamic_cast<TextNode*>(arg.node) : nullptr;
  return node != nullptr ? node->text : "?";
}

// Writes down its arguments as they come. `fail` and `throw` as first argument do so;
// a number gives as many warnings.
class EchoCreator final : public PrNodeCreator {
 public:
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override {
    std::string text = args[0].string;
    for (int i = 1; i < numArgs; ++i) text += " " + textOf(args[i]);
    const std::string first =
        numArgs > 1 && args[1].type == PrArgStruct::kString ? args[1].string : "";
    if (first == "throw") THROW(Assert, "thrown");
    if (first == "fail") {
      err->fail("failed");
      return 0;
    }
    for (int i = std::atoi(first.c_str()); i > 0; --i) err->warn("warned");
    result->setNode(new TextNode("[" + text + "]"));
    return 1;
  }
};

// Writes down what PrArgParser makes of its arguments.
class SortCreator final : public PrNodeCreator {
 public:
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override {
    PrArgParser sorted;
    if (!sorted.parseArgs(1, numArgs, args, err)) return 0;
    std::ostringstream os;
    os << "k=" << sorted.str_arg("k", "none") << ' ' << sorted.int_arg("k", 7) << ' '
       << sorted.float_arg("k", 0.5f) << ' ' << sorted.exist_arg("k") << " flags "
       << sorted.numFlags() << " words";
    FdStream* words = sorted.words();
    for (; words->more(); words->next()) {
      os << ' ' << *static_cast<const WmWord*>(words->key()) << ':'
         << *static_cast<const float*>(words->data());
    }
    os << " strings " << sorted.numStrings() << " nodes";
    for (int i = 0; i < sorted.numNodes(); ++i) os << ' ' << sorted.nodeWeight(i);
    for (int i = 0; i < sorted.numStreams(); ++i) {
      os << " stream " << sorted.streamWeight(i) << ' ' << sorted.streamWeightedWords(i);
    }
    result->setNode(new TextNode(os.str()));
    return 1;
  }
};

class CollectingParser final : public PrParserImpl {
 public:
  CollectingParser() {
    add("x", new EchoCreator);
    add("sort", new SortCreator);
    add("and", PrManager::AndCreator());
    add("or", PrManager::OrCreator());
    add("not", PrManager::NotCreator(kDocuments));
    add("sparse", PrManager::SparseCreator());
    add("max", PrManager::MaxCreator(kDocuments));
    add(".", PrManager::BitVectorCreator(kDocuments));
    add("words", PrManager::WordCreator());
    add("augment", PrManager::AugmentCreator(2));
    add("range", PrManager::RangeCreator());
    add("text", PrManager::StreamCreator(stemmer_.get(), lexer_.get(), &input_));
  }

  bool errorHandler() override {
    std::ostringstream os;
    writeMessages(os);
    told += os.str();
    const bool goesOn = error_.errorLevel() != PrParserError::kFailure;
    error_.deferMessages();
    return goesOn;
  }

  void finalErrorHandler() override {
    deferred = error_.numMessages();
    level = error_.errorLevel();
  }

  // The text of the node that the query makes, or its documents with their scores,
  // "failed" if it makes nothing.
  std::string answer(const std::string& query) {
    told.clear();
    PrArgStruct result;
    if (!Parse(&result, query.c_str())) return "failed";
    std::ostringstream os;
    if (auto* text = dynamic_cast<TextNode*>(result.node)) {
      os << text->text;
    } else {
      result.node->forEach([&os](int doc, float score) {
        if (doc < kDocuments) os << (os.tellp() > 0 ? " " : "") << doc << ':' << score;
        return doc < kDocuments;
      });
    }
    result.deleteObject();
    return os.str();
  }

  static constexpr int kDocuments = 10;

  std::string told;
  int deferred = 0;
  PrParserError::Level level = PrParserError::kNone;

 private:
  void add(const char* keyword, PrNodeCreator* creator) {
    creators_.emplace_back(creator);
    AddKeyword(keyword, creator);
  }

  std::unique_ptr<TkStemmer> stemmer_{TkManager::NullStemmer()};
  std::unique_ptr<TkLexer> lexer_{TkManager::SimpleTextLexer()};
  std::istringstream input_{"some text"};
  std::vector<std::unique_ptr<PrNodeCreator>> creators_;
};

// What is told: each text begins with "Warning: " or "Error: ", and is about the
// whole query if no other expression is named.
struct Message {
  std::string text;
  std::string expression = "";
};

struct Case {
  std::string query;
  std::string answer;
  std::vector<Message> told = {};
};

void expectAll(const std::vector<Case>& cases) {
  CollectingParser parser;
  for (const Case& c : cases) {
    std::string told;
    for (const Message& message : c.told) {
      const std::string& expression = message.expression.empty() ? c.query : message.expression;
      told.append(message.text).append("\n  in expression: ").append(expression).append("\n");
    }
    EXPECT_EQ(parser.answer(c.query), c.answer) << c.query;
    EXPECT_EQ(parser.told, told) << c.query;
    EXPECT_EQ(TextNode::live, 0) << c.query;
  }
}

const std::string kNoClose = "Warning: Missing final close parenthesis. Continuing.";
const std::string kOpenString = "Error: Invalid query: open-ended string in query.";
const std::string kNoParen = "Error: Invalid query: missing open paren.";
const std::string kKeyword = "Error: Invalid query: unknown keyword '";

TEST(PrParser, Grammar) {
  std::vector<Message> sixteen(15, {"Warning: warned", "(x 16 (x))"});
  sixteen.push_back({"Error: warned", "(x 16 (x))"});
  expectAll({
      {" \t(x a b)", "[x 'a' 'b']"},
      {"(\tx a\tb \tc)", "[x 'a\tb' 'c']"},
      {"(x(x a)b(x))", "[x [x 'a'] 'b' [x]]"},
      {"(x a\"b c\"d \"\")", "[x 'a' 'b c' 'd' '']"},
      {"(x \"(\" \")\" \"x\")", "[x '(' ')' 'x']"},
      {"(\"x\" \\( a\\ b\\\" \"c\\\")\")", "[x '\\(' 'a\\ b\\\"' 'c\\\")']"},
      {"(x \x01\x7f\x80\xff\n)", "[x '\x01\x7f\x80\xff\n']"},

      {"", "failed", {{kNoParen}}},
      {"x (x)", "failed", {{kNoParen}}},
      {"\"(\" x)", "failed", {{kNoParen}}},
      {"(", "failed", {{kKeyword + "'."}}},
      {"()", "failed", {{kKeyword + ")'."}}},
      {"((x))", "failed", {{kKeyword + "('.", "(x)"}}},
      {"(x (x) (X a) b)", "failed", {{kKeyword + "X'.", "(X a)"}}},
      {"(x (x \"abc)", "failed", {{kOpenString}}},
      {"(x \"abc\\\")", "failed", {{kOpenString}}},
      {"(x \"", "failed", {{kOpenString}}},
      {"(x", "[x]", {{kNoClose}}},
      {"(x (x) (x a\\", "[x [x] [x 'a\\']]", {{kNoClose, "(x a\\"}, {kNoClose}}},
      {"(x (x) (x fail (x)) (x))", "failed", {{"Error: failed", "(x fail (x))"}}},
      {"(x 1)(x b)",
       "[x '1']",
       {{"Warning: warned", "(x 1)"},
        {"Warning: Ignoring text after the final close parenthesis.", "(x b)"}}},
      {"(x (x 16 (x)))", "failed", sixteen},
      {"(x (sort k=))", "failed", {{"Warning: Badly formed argument assignment", "(sort k=)"}}},
      {"(sort (x) =1)", "failed", {{"Warning: Badly formed argument assignment"}}},
      {"(sort k=1=)", "failed", {{"Warning: Badly formed argument assignment"}}},
  });
}

TEST(PrParser, TellsTheErrorStream) {
  PrParserImpl parser;
  EchoCreator creator;
  parser.AddKeyword("x", &creator);
  PrArgStruct result;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(parser.Parse(&result, "(x (x 1) (y))"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Warning: warned\n  in expression: (x 1)\n" + kKeyword + "y'.\n  in expression: (y)\n");
  EXPECT_EQ(result.node, nullptr);
}

TEST(PrParser, DefersMessages) {
  CollectingParser parser;
  EXPECT_EQ(parser.answer("(x 2 (x 15))"), "[x '2' [x '15']]");
  EXPECT_EQ(parser.deferred, 17);
  EXPECT_EQ(parser.level, PrParserError::kWarning);
  EXPECT_EQ(parser.answer("(x (x fail))"), "failed");
  EXPECT_EQ(parser.deferred, 1);
  EXPECT_EQ(parser.level, PrParserError::kFailure);
}

TEST(PrParser, StaysUsableWhenAnOperatorThrows) {
  CollectingParser parser;
  PrArgStruct result;
  EXPECT_EQ(thrownBy([&] { parser.Parse(&result, "(x (x) (x throw (x)))"); }), "Assert: thrown");
  EXPECT_EQ(TextNode::live, 2);
  EXPECT_EQ(parser.answer("(x a)"), "[x 'a']");
  EXPECT_EQ(TextNode::live, 0);
}

TEST(PrArgParser, FormsAndWeights) {
  const std::string w63(63, 'w');
  const std::string none = "k=none 7 0.5 0 flags 0 words";
  expectAll({
      {"(sort)", none + " strings 0 nodes"},
      {"(sort -k -5)", "k=1 1 1 1 flags 2 words strings 0 nodes"},
      {"(sort k=-2.5=x)", "k=-2.5=x -2 -2.5 1 flags 0 words strings 0 nodes"},
      {"(sort \"k=a b\" K=2)", "k=a b 0 0 1 flags 0 words strings 0 nodes"},
      {"(sort k=9 k=-99999999999)",
       "k=-99999999999 -2147483648 -1e+11 1 flags 0 words strings 0 nodes"},
      {"(sort wt=2 B wt=.5 a b wt=x c wt= d)", none + " b:2 a:0.5 b:1 c:1 d:1 strings 5 nodes"},
      {"(sort wt=2 -f (x) (x) wt=3 k=1 a wt=4 wt=5 \"\" b)",
       "k=1 1 1 1 flags 1 words a:1 b:5 strings 3 nodes 2 1"},
      {"(sort wt=2 " + w63 + "w " + w63 + ")", none + " " + w63 + ":2 strings 2 nodes"},
      {"(sort wt=3 (words a) (text))", none + " strings 0 nodes stream 3 1 stream 1 0"},
  });
}

// As an operator of a program may have it: an object of its own, and a node that it
// keeps.
TEST(PrArgParser, LeavesWhatIsNotOwned) {
  TextNode kept("kept");
  int object = 0;
  PrArgStruct args[4];
  args[1].type = 200;
  args[1].object = &object;
  args[2].type = PrArgStruct::kNode;
  args[2].node = &kept;
  args[3].setNode(new TextNode("dropped"));
  {
    PrArgParser arguments;
    PrParserError error;
    ASSERT_TRUE(arguments.parseArgs(1, 4, args, &error));
    EXPECT_EQ(arguments.other(0), &object);
    EXPECT_EQ(arguments.node(0), &kept);
    const std::unique_ptr<PrParserNode> taken(arguments.takeNode(0));
    EXPECT_EQ(arguments.node(0), nullptr);
    EXPECT_EQ(arguments.takeNode(0), nullptr);
    EXPECT_EQ(arguments.node(2), nullptr);
    EXPECT_EQ(TextNode::live, 2);
  }
  EXPECT_EQ(TextNode::live, 1);
  EXPECT_EQ(args[3].node, nullptr);
}

TEST(PrQueryStream, CopiesWhatFits) {
  PrParserError error;
  PrQueryStream stream("ab", &error);
  char place[] = "---";
  int size = 1;
  stream.token(place, &size);
  EXPECT_STREQ(place, "a--");
  EXPECT_EQ(size, 3);
}

TEST(PrNodeCreators, EachOnItsOwn) {
  const std::string two = "(sparse 1 2) (sparse 2 3)";
  const std::string unparsed = "Warning: Couldn't parse string: ";
  expectAll({
      {"(and " + two + ")", "2:1"},
      {"(or wt=3 " + two + ")", "1:0.75 2:1 3:0.25"},
      {"(or mode=MAX wt=3 " + two + ")", "1:0.75 2:0.75 3:0.25"},
      {"(or mode=min " + two + ")", "1:0.5 2:1 3:0.5"},
      {"(and mode=Norm " + two + ")", "2:0.75"},
      {"(and mode=prod " + two + ")", "2:0.25"},
      {"(and (. 1))", "failed", {{"Error: This node requires at least two sub-nodes"}}},
      {"(and Foo \"b c\" " + two + ")",
       "2:1",
       {{"Warning: Unknown string arguments: 'foo' 'b c' "}}},

      {"(max (. 1 2) (. score=3 2) 5 7:0.5)", "1:0.5 2:1.5 5:1 7:0.5"},
      {"(max n=2 w=1 wt=3 (. 1) (. 2) 4 3:0.1)", "1:0.75 4:1"},
      {"(max min=0.6 (. 1) (augment -all (. 1)))", "1:1"},
      {"(max n=0 (. 1))", ""},
      {"(max n=-1 (. 1))", ""},
      {"(max n=10001)", "failed", {{"Error: This node keeps at most 10000 documents"}}},
      {"(max 5x 6: 7:-1 a 3)",
       "3:1",
       {{unparsed + "5x"}, {unparsed + "6:"}, {unparsed + "7:-1"}, {unparsed + "a"}}},

      {"(not (. 1-8))", "0:0.1 9:0.1"},
      {"(not hi=2 lo=1 t=0.5 docs=4 (max 1 2:0.25))", "0:1 1:2 2:1 3:1"},
      {"(not lo=0 hi=3 (. 4))", "4:3"},
      {"(not (not (not (augment -all (. 1)))))", ""},
      {"(not a)", "failed", {{"Error: NOT requires a node argument"}}},
      {"(not a (. 1-9) (. 2))",
       "0:0.1",
       {{"Warning: Superfluous string arguments ignored"}, {"Warning: Superfluous nodes ignored"}}},

      {"(sparse 3 x 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 2)", "0:1 1:1 3:1"},
      {"(sparse 3 99999999999)", "3:1"},
      {"(sparse)", "failed", {{"Error: Not enough args to SPARSE operator."}}},
      {"(sparse 1 (. 1))", "failed", {{"Error: Sparse operator expects no nodes."}}},

      {"(. score=0.5 1 8-2000000000 5-3 99 (range 3 4))", "1:0.5 3:0.5 4:0.5 8:0.5 9:0.5"},
      {"(. 1-x 2)", "2:1", {{unparsed + "1-x"}}},
      {"(. (augment -all (. 1)))", "0:1 1:1 2:1 3:1 4:1 5:1 6:1 7:1 8:1 9:1"},

      {"(augment (. 1 2))", "1:2 2:2"},
      {"(augment s=3 um=1 (. 1 2) (. score=0.5 2))", "1:1 2:1.5"},
      {"(augment s=3 um=0 (. 1 2) (. score=0.5 2))", "1:1 2:3"},
      {"(and (augment all=1 (. 1)) (. 1 2))", "1:1.5 2:1"},
      {"(augment a)", "failed", {{"Error: This node requires 1 or 2 argument nodes"}}},
      {"(augment -all (. 1) (. 1))", "failed", {{"Error: Only one node allowed with -all option"}}},
      {"(augment a (. 1) (words b) (text))",
       "1:2",
       {{"Warning: Ignoring extra word arguments"}, {"Warning: Ignoring extra stream arguments"}}},

      {"(range 3 4)", "3:1 4:1"},
      {"(range 3)", "failed", {{"Error: Range operator requires two arguments"}}},
      {"(range 3 (. 1))", "failed", {{"Error: Range operator requires two string arguments"}}},
  });
}

std::string wordsOf(FdStream* stream) {
  std::ostringstream os;
  for (stream->reset(); stream->more(); stream->next()) {
    os << *static_cast<const WmWord*>(stream->key());
    if (stream->dataSize() == sizeof(float)) os << ':' << *static_cast<float*>(stream->data());
    os << ' ';
  }
  return os.str();
}

TEST(PrNodeCreators, Streams) {
  CollectingParser parser;
  PrArgStruct result;
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(parser.Parse(&result, "(words b wt=2 A (. 1))"));
    EXPECT_EQ(int{result.type}, PrArgStruct::kWordStream);
    EXPECT_EQ(int{result.parserDelete}, 0);
    EXPECT_EQ(wordsOf(result.stream), "b:1 a:2 ");
  }
  ASSERT_TRUE(parser.Parse(&result, "(text a)"));
  EXPECT_EQ(int{result.type}, PrArgStruct::kStream);
  EXPECT_EQ(wordsOf(result.stream), "some text ");
  result.deleteObject();
  EXPECT_FALSE(parser.Parse(&result, "(text)"));  // its end has been reached
  for (const char* text : {"This node does not accept node arguments\n",
                           "Ignoring arguments to Stream Creator\n", "Stream in bad state\n"}) {
    EXPECT_NE(parser.told.find(text), std::string::npos) << text;
  }
}

std::string times(int n, const std::string& text) {
  std::string all;
  while (n-- > 0) all += text;
  return all;
}

TEST(PrParser, HostileQueries) {
  const std::string deep = "Error: Invalid query: expressions nested more than 1000 deep.";
  const std::string tooLong = "Error: Invalid query: text longer than 1048576 bytes.";
  struct Hostile {
    std::string query;
    std::string answer;
    std::string firstLine;
  };
  const std::vector<Hostile> cases = {
      {times(10000, "(x ") + times(10000, ")"), "failed", deep},
      {times(10000, "("), "failed", kKeyword + "('."},
      {times(999, "(not ") + "(. 1 2)" + times(999, ")"), "0:0.1 3:0.1 4:0.1", ""},
      {times(999, "(sort ") + times(500000, "a "), "k=none", kNoClose},
      {"(x " + times(2000, "(x)") + ")", "failed",
       "Error: Invalid query: more than 2000 expressions."},
      {"(x " + std::string(10 << 20, '"') + ")", "failed", tooLong},
      {"(. " + times(250000, "0-9 ") + ")", "0:1 1:1", ""},
      {"(. " + times(500000, "a ") + ")", "failed", "Warning: Couldn't parse string: a"},
      {"(or " + times(20, "(. 1)") + ")", "1:1", ""},
      {"(or " + times(21, "(. 1)") + ")", "failed", "Error: This node takes at most 20 sub-nodes"},
      {"(words " + times(1001, "a ") + ")", "failed", "Error: This node takes at most 1000 words"},
      {"(sort " + times(100, std::string(5000, 'k') + "=" + std::string(5000, 'v') + " ") + ")",
       "k=none", ""},
  };
  CollectingParser parser;
  for (const Hostile& c : cases) {
    const std::string answer = parser.answer(c.query);
    EXPECT_EQ(answer.substr(0, c.answer.size()), c.answer) << c.query.substr(0, 40);
    EXPECT_EQ(parser.told.substr(0, parser.told.find('\n')), c.firstLine);
    EXPECT_LT(parser.told.size(), 2u << 20);
    EXPECT_EQ(TextNode::live, 0) << c.query.substr(0, 40);
  }
}

// Whatever stands there, a query makes something or says why not.
TEST(PrParser, RandomQueries) {
  const std::vector<std::string> pieces = {
      "(",   ")",     "(and ",     "(or ", "(not ", "(sparse ",  "(max ",   "(. ",    "(augment ",
      "(x ", "1 ",    "3-7 ",      ") ",   "-all ", "(range 2 ", "n=3 ",    "\"",     "5:0.5 ",
      "\\",  "wt=2 ", "\x80\xff ", "\t",   "w=1 ",  "= ",        "s=1e99 ", "wt=nan "};
  unsigned state = 1;
  CollectingParser parser;
  for (int i = 0; i < 20000; ++i) {
    std::string query = i % 2 == 0 ? "(" : "";
    for (int n = i % 25; n >= 0; --n) {
      state = state * 1664525u + 1013904223u;
      query += pieces[(state >> 16) % pieces.size()];
    }
    EXPECT_TRUE(parser.answer(query) != "failed" || !parser.told.empty()) << query;
    ASSERT_EQ(TextNode::live, 0) << query;
  }
}

}  // namespace
}  // namespace vandrelle
