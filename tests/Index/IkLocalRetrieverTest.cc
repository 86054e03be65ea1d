#include "Index/IkLocalRetriever.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "IkTestTools.h"
#include "IkTinyIndex.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/QaBinder.h"
#include "Parser/PrAllNode.h"
#include "Parser/PrRangeNode.h"
#include "Parser/PrSparseNodeImpl.h"

namespace vandrelle {
namespace {

using Row = std::map<int, int>;        // frequency by document
using Scores = std::map<int, double>;  // by document
using Words = std::vector<std::string>;
using Operations = std::vector<IkRetrieverInput::Operation>;

std::string wordNumber(int i) { return "w" + std::to_string(i); }

// An index whose rows and norms are known, with the formulas of weights in double.
struct Model {
  static constexpr float kMinLength = 100.0f;
  int numDocs;
  std::map<std::string, Row> rows;
  std::string norms;
  std::string root;

  Model(int documents, std::map<std::string, Row> allRows)
      : numDocs(documents), rows(allRows), norms(std::size_t(documents), 100) {}
  // Words w0, w1 ...: the first in most documents, the last in few.
  Model(unsigned seed, int documents, int numWords) : Model(documents, {}) {
    std::mt19937 random(seed);
    for (char& norm : norms) norm = static_cast<char>(3 + random() % 250);
    for (int i = 0; i < numWords; ++i) {
      for (int doc = 0; doc < numDocs; ++doc) {
        if (random() % static_cast<unsigned>(i * i / 4 + 2) != 0) continue;
        rows[wordNumber(i)][doc] = random() % 3 != 0 ? 1 : 1 + static_cast<int>(random() % 200);
      }
    }
  }
  void write(const char* name) {
    IkIndexInfo info;
    info.totalNumChunks = numDocs;
    info.minDocumentLength = kMinLength;
    IkSimilarity sim;
    sim.bind(&info);
    IkTinyWords words;
    for (const auto& [word, row] : rows) {
      for (const auto& [doc, freq] : row) words[word].emplace_back(doc, std::vector<int>(freq));
    }
    root = writeTinyIndex(name, numDocs, words, &sim);
    info.write((root + ".info").c_str());
    writeBytes(root + ".norm", norms);
    for (const char* suffix : {".qa.map", ".qa.cache"}) std::remove((root + suffix).c_str());
  }
  int frequency(const std::string& word, int doc) const {
    const auto row = rows.find(word);
    return row == rows.end() || row->second.count(doc) == 0 ? 0 : row->second.at(doc);
  }
  // A word that isn't there counts as one of a single document.
  double df(const std::string& word) const {
    return rows.count(word) == 0 ? 1 : static_cast<double>(rows.at(word).size());
  }
  double norm(int doc) const {
    return static_cast<unsigned char>(norms[std::size_t(doc)]) / 255.0 / std::sqrt(kMinLength);
  }
  double tf(int doc, int freq) const {
    return std::sqrt(std::min<double>(freq, std::floor(0.1 / 7 / norm(doc) / norm(doc))));
  }
};

// Dimensions of a word each, or of several words.
struct Query {
  std::vector<Words> dimensions;
  std::vector<double> weights;
  Operations operations = {};  // operands are dimensions

  void fill(IkRetrieverInput& input) const {
    std::vector<int> numbers;
    for (std::size_t i = 0; i < dimensions.size(); ++i) {
      const WmLocalWord first(dimensions[i][0].c_str());
      IkRetrieverInput::TermData* term =
          dimensions[i].size() == 1 ? input.term(*first) : input.newVirtualTerm();
      term->weight = static_cast<float>(weights[i]);
      numbers.push_back(term->number);
      if (dimensions[i].size() == 1) continue;
      for (const auto& word : dimensions[i]) {
        input.addVirtual(term->number, WmLocalWord(word.c_str()).word(), 0.0f);
      }
    }
    for (auto operation : operations) {
      if (operation.type == 2) operation.operand = numbers[std::size_t(operation.operand)];
      input.pushOperation(operation);
    }
  }
  // Of operations that push a dimension, may negate it, and combine it with what there is.
  bool holds(const std::vector<int>& freqs) const {
    bool value = true;
    bool former = true;
    for (const auto& [type, operand] : operations) {
      if (type == 2) former = value;
      if (type == 2) value = freqs[std::size_t(operand)] > 0;
      if (type == 5) value = !value;
      if (type == 3) value = former && value;
      if (type == 4) value = former || value;
    }
    return value;
  }
};

// Operations name each dimension once at most, so that something satisfies them: the
// ranges deliberately take what nothing satisfies for no operations.
Query randomQuery(std::mt19937& random, int numWords, bool several) {
  Query query;
  std::set<unsigned long> used;
  const bool operations = random() % 2 == 0;
  while (query.dimensions.empty() || random() % 3 != 0) {
    Words words;
    for (auto i = several ? 1 + random() % 4 : 1; i > 0; --i) {
      const auto word = random() % static_cast<unsigned>(numWords + 1);
      if (used.insert(word).second) words.push_back(wordNumber(static_cast<int>(word)));
    }
    if (words.empty()) break;
    if (operations && random() % 2 == 0) {
      const bool first = query.operations.empty();
      query.operations.push_back({2, static_cast<int>(query.dimensions.size())});
      if (random() % 2 == 0) query.operations.push_back({5, 0});
      if (!first) query.operations.push_back({3 + static_cast<int>(random() % 2), 0});
    }
    query.dimensions.push_back(words);
    query.weights.push_back(0.25 + static_cast<double>(random() % 100) / 25);
  }
  return query;
}

// The score of every document that has one. The ranges take the rows of a dimension one
// by one.
Scores scoresOf(const Model& model, const Query& query, int scaling, bool rowByRow,
                PrParserNode* constraint = nullptr) {
  static const double kCoord[] = {0, 0.01, 0.0333, 0.1, 0.2, 0.4, 0.6, 0.8, 0.9, 0.95};
  std::vector<double> idfs;
  double squares = 0;
  for (std::size_t i = 0; i < query.dimensions.size(); ++i) {
    double df = 0;
    for (const auto& word : query.dimensions[i]) df += model.df(word);
    idfs.push_back(std::log((model.numDocs + 1) / df));
    squares += std::pow(query.weights[i] * idfs.back(), 2);
  }
  Scores scores;
  for (int doc = 0; doc < model.numDocs; ++doc) {
    double score = 0;
    int matched = 0;
    std::vector<int> freqs;
    for (std::size_t i = 0; i < query.dimensions.size(); ++i) {
      const double scale = query.weights[i] * idfs[i] * idfs[i] / std::sqrt(squares);
      int sum = 0;
      for (const auto& word : query.dimensions[i]) {
        const int freq = model.frequency(word, doc);
        sum += freq;
        if (rowByRow) score += scale * model.tf(doc, freq);
        matched += rowByRow && freq > 0;
      }
      if (!rowByRow) score += scale * model.tf(doc, sum);
      matched += !rowByRow && sum > 0 && idfs[i] > 0;
      freqs.push_back(sum);
    }
    score *= model.norm(doc) * (constraint != nullptr ? constraint->score(doc) : 1);
    if (scaling == 2 && matched < 10) score *= kCoord[matched];
    if (score <= 0 || !query.holds(freqs)) continue;
    scores[doc] = scaling == 0 ? score : 1 - std::acos(std::min(score, 1.0)) * 2 / M_PI;
  }
  return scores;
}

// The places of the result that are in use, best first.
std::vector<PrTuple> answer(IkLocalRetriever* retriever, IkRetrieverInput& input, int size) {
  std::vector<PrTuple> tuples;
  const std::unique_ptr<PrSparseNode> node(retriever->retrieve(&input, size));
  auto* result = static_cast<PrSparseNodeImpl*>(node.get());
  result->sortByScore();
  for (int i = 0; i < result->numTuples(); ++i) {
    if (result->docScore(i) != 0) tuples.push_back({result->docNum(i), result->docScore(i)});
  }
  return tuples;
}

// Are `tuples` the best `size` of `scores`, in their order? The table of the arc has
// straight pieces.
void expectBest(const std::vector<PrTuple>& tuples, const Scores& scores, std::size_t size,
                int scaling) {
  std::vector<double> best;
  for (const auto& [doc, score] : scores) best.push_back(score);
  std::sort(best.rbegin(), best.rend());
  ASSERT_EQ(tuples.size(), std::min(size, best.size()));
  std::set<int> docs;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    ASSERT_EQ(scores.count(tuples[i].doc), 1u) << tuples[i].doc;
    ASSERT_TRUE(docs.insert(tuples[i].doc).second);
    const double tolerance = scaling != 0 ? 2e-3 : 1e-5 * best[i];
    ASSERT_NEAR(tuples[i].score, scores.at(tuples[i].doc), tolerance) << tuples[i].doc;
    ASSERT_NEAR(tuples[i].score, best[i], tolerance) << i;
  }
}

TEST(IkLocalRetriever, LoopsAgreeWithABruteForceScorer) {
  constexpr int kWords = 24;
  Model model(1, 290, kWords);
  model.write("loops");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  IkLocalRetriever* retriever = binder.localRetriever();
  retriever->scoreBucketsLength(64);  // the last range is a part of one
  retriever->debug(1);
  std::map<std::string, int> loops;
  std::mt19937 random(2);
  for (int round = 0; round < 1000 && !HasFatalFailure(); ++round) {
    const Query query = randomQuery(random, kWords, round % 3 == 0);
    const int scaling = static_cast<int>(random() % 3);
    PrSparseNodeImpl some(100);
    for (int i = 0; i < 100; ++i) some.add(i * 29 / 10, 0.5f + static_cast<float>(i % 7));
    some.sort();
    retriever->similarityScaling(scaling);
    retriever->constraint(random() % 3 == 0 ? &some : nullptr);
    retriever->maxDocs(0);
    IkRetrieverInput input;
    query.fill(input);
    const TestLog log;
    const std::vector<PrTuple> tuples = answer(retriever, input, 1000);
    const std::string line = log.lines().back();
    const std::string loop = line.substr(9, line.find(',') - 9);
    SCOPED_TRACE(std::to_string(round) + loop);
    ++loops[loop];
    bool merged = retriever->constraint() != nullptr || input.numTerms() >= 8;
    for (const auto& [type, operand] : query.operations) {
      merged |= type == 2 && query.dimensions[std::size_t(operand)].size() > 1;
    }
    const bool single = input.numTerms() == 1 && query.operations.empty();
    EXPECT_EQ(loop, merged ? "merge" : single ? "single term" : "ranges");
    const Scores scores =
        scoresOf(model, query, scaling, loop == "ranges", retriever->constraint());
    expectBest(tuples, scores, 1000, scaling);
    EXPECT_EQ(input.matches(), static_cast<int>(scores.size()));
    if (loop == "ranges" && input.numTerms() > 2) continue;  // may prune too much
    retriever->maxDocs(0);
    expectBest(answer(retriever, input, 5), scores, 5, scaling);
  }
  for (const char* loop : {"single term", "ranges", "merge"}) EXPECT_GT(loops[loop], 50) << loop;
}

// The documents of a query of words and their count, as text.
std::string ask(IkLocalRetriever* retriever, const Words& words, int size = 100) {
  IkRetrieverInput input;
  for (const auto& word : words) input.add(WmLocalWord(word.c_str()).word(), 1.0f);
  std::set<int> found;
  for (const PrTuple& tuple : answer(retriever, input, size)) found.insert(tuple.doc);
  std::string docs;
  for (const int doc : found) docs += std::to_string(doc) + " ";
  return docs + "of " + std::to_string(input.matches());
}

TEST(IkLocalRetriever, StopsAtMaxDocsConstraintsAndDeletions) {
  Model model(10, {{"a", {{2, 1}, {4, 3}, {7, 1}, {9, 2}}}});
  model.write("limits");
  const char bits[] = {0, 0, 0, 10, 0, 0, 0, 1, 0x20, 0};
  for (const bool deleted : {false, true}) {
    if (deleted) writeBytes(model.root + ".xk", std::string(bits, sizeof bits));
    const auto expected = [deleted](std::string with, std::string without) {
      return deleted ? without : with;
    };
    IkLocalIndexBinder binder(model.root.c_str(), nullptr);
    IkLocalRetriever* retriever = binder.localRetriever();
    retriever->scoreBucketsLength(4);
    EXPECT_EQ(ask(retriever, {"a"}), expected("2 4 7 9 of 4", "4 7 9 of 3"));
    EXPECT_EQ(ask(retriever, {"a"}, -3), expected("of 4", "of 3"));
    EXPECT_EQ(ask(retriever, {"none"}), "of 0");
    // Ranges end before the number, the merge behind it.
    retriever->maxDocs(7);
    EXPECT_EQ(ask(retriever, {"a"}), expected("2 4 of 2", "4 of 1"));
    PrRangeNode range(1, 8);
    retriever->constraint(&range);
    EXPECT_EQ(ask(retriever, {"a"}), expected("2 4 7 of 3", "4 7 of 2"));
    retriever->maxDocs(0);
    EXPECT_EQ(ask(retriever, {"a"}), expected("2 4 7 of 3", "4 7 of 2"));
    EXPECT_EQ(retriever->maxDocs(), 10);
  }
}

TEST(IkLocalRetriever, EstimatesMatchesWhenItStopsEarly) {
  Model model(12000, {});
  for (int doc = 0; doc < 12000; ++doc) model.rows["a"][doc] = 1;
  for (int doc = 0; doc < 400; ++doc) model.rows["b"][doc] = 1;
  model.write("early");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  const auto count = [&binder](const char* word, float share, int range) {
    binder.localRetriever()->rowFraction(share);
    binder.localRetriever()->scoreBucketsLength(range);
    return ask(binder.localRetriever(), {word, "none"}, 0);
  };
  EXPECT_EQ(count("a", 1.1f, 2500), "of 12000");
  EXPECT_EQ(count("a", 0.1f, 2500), "of 12000");  // in the first range
  EXPECT_EQ(count("a", 0.1f, 1500), "of 24000");  // 3000, and 1500 before the last range
  EXPECT_EQ(count("b", 1.1f, 2500), "of 1920");   // a row that has ended holds nothing up
}

TEST(IkLocalRetriever, StartsSerialNumbersOver) {
  constexpr int kRanges = 4369;  // 15 times this are all numbers
  Model model(2 * kRanges, {{"x", {{1, 1}}}, {"y", {{0, 1}}}});
  model.write("serial");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  binder.localRetriever()->scoreBucketsLength(2);
  EXPECT_EQ(ask(binder.localRetriever(), {"x", "none"}), "1 of 1");
  for (int i = 1; i < 15; ++i) EXPECT_EQ(ask(binder.localRetriever(), {"y", "none"}), "0 of 1");
  EXPECT_EQ(ask(binder.localRetriever(), {"x", "none"}), "1 of 1");
}

TEST(IkLocalRetriever, CondensesTenRareMembers) {
  Model model(300, {});
  for (int i = 0; i < 11; ++i) model.rows[wordNumber(i)] = {{i, 2}, {i + 1, 1}, {299, 3}};
  for (int doc = 0; doc < 250; ++doc) model.rows["often"][doc] = 1;
  model.write("condensed");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  for (const int members : {9, 10, 11}) {
    Query query{{{"often"}}, {2.0}};
    for (int i = 0; i < members; ++i) query.dimensions[0].push_back(wordNumber(i));
    IkRetrieverInput input;
    query.fill(input);
    if (members == 11) input.term(2)->idf = 1.0f;  // a dimension of weight 0 as well
    PrAllNode all(300);
    binder.localRetriever()->constraint(&all);
    testing::internal::CaptureStderr();
    const std::vector<PrTuple> tuples = answer(binder.localRetriever(), input, 300);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), members == 9 ? "" : "Condensing! (10)\n");
    expectBest(tuples, scoresOf(model, query, 0, false), 300, 0);
  }
}

TEST(IkLocalRetriever, RunsOperationsOnTermsOfAllKinds) {
  Model model(5, 100, 8);
  model.write("kinds");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  enum { kWord, kSeveral, kMember, kMember2, kOther, kTrue, kUnknown };
  const struct {
    Operations operations;
    Words any;  // of which documents must have one; none: no condition
    bool negated;
  } cases[] = {{{{2, kTrue}}, {}, false},
               {{{3, 0}, {4, 0}, {99, 1}}, {}, false},  // nothing to combine
               {{{2, kOther}}, {"w5"}, false},
               {{{2, kSeveral}, {5, 0}}, {"w3", "w4"}, true},
               {{{2, kMember}, {2, kTrue}, {3, 0}}, {"w3"}, false},
               {{{2, -1}, {5, 0}}, {}, false},
               {{{2, 1 << 30}, {2, kSeveral}, {4, 0}}, {"w3", "w4"}, false},
               {{{2, kUnknown}, {2, kOther}, {4, 0}}, {"w5"}, false}};
  for (const auto& c : cases) {
    IkRetrieverInput input;
    Query{{{"w0"}, {"w3", "w4"}, {"w5"}}, {1, 1, 0}}.fill(input);
    input.newTrueTerm();
    for (const auto& operation : c.operations) input.pushOperation(operation);
    std::set<int> found, expected;
    binder.localRetriever()->maxDocs(0);
    for (const auto& tuple : answer(binder.localRetriever(), input, 100)) found.insert(tuple.doc);
    for (int doc = 0; doc < 100; ++doc) {
      const auto has = [&](const std::string& word) { return model.frequency(word, doc) > 0; };
      const bool holds = c.any.empty() || std::any_of(c.any.begin(), c.any.end(), has);
      if ((has("w0") || has("w3") || has("w4")) && holds != c.negated) expected.insert(doc);
    }
    EXPECT_EQ(found, expected) << &c - cases;
  }
}

TEST(IkLocalRetriever, AnswersQueriesWithoutDirectionWithNothing) {
  Model model(6, 50, 6);
  model.write("nothing");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  IkRetrieverInput input;
  EXPECT_TRUE(answer(binder.localRetriever(), input, 10).empty());
  input.add(WmLocalWord("w0").word(), 0.0f);
  input.newVirtualTerm()->weight = 1.0f;  // of infinite idf
  input.add(WmLocalWord("w1").word(), std::numeric_limits<float>::quiet_NaN());
  EXPECT_TRUE(answer(binder.localRetriever(), input, 10).empty());
  EXPECT_EQ(input.matches(), 0);
  // They don't spoil what else there is, nor does a term without a word.
  const TestLog log;
  input.add(static_cast<const WmWord*>(nullptr), 1.0f);
  input.add(WmLocalWord("w0").word(), 1.0f);
  EXPECT_EQ(answer(binder.localRetriever(), input, 100).size(), model.rows["w0"].size());
  EXPECT_EQ(log.lines(), std::vector<std::string>{"0:Nonvirtual term is invalid"});
}

// Knows up to three documents of every query but those that begin with "w5".
struct Accelerator : QaBinder {
  int lookup(FdVector<WmMagicWord>& words, FdRBTree<QaDocData>& tree, int resultSize) override {
    if (*words[0] == WmMagicWord("w5")) return 0;
    for (int i = 0; i < std::min(resultSize, 3); ++i) tree.insert({i, 1.0f});
    return 1;
  }
};

TEST(IkLocalRetriever, TriesTheAccelerator) {
  Model model(8, 50, 8);
  model.write("accelerated");
  for (const char* suffix : {".qa.map", ".qa.cache"}) {
    EXPECT_EQ(IkLocalIndexBinder(model.root.c_str(), nullptr).queryAccelBinder(0), nullptr);
    writeBytes(model.root + suffix, "");
  }
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  EXPECT_NE(binder.queryAccelBinder(0), nullptr);
  IkLocalRetriever* retriever = binder.localRetriever();
  Accelerator accelerator;
  retriever->qaBinder(&accelerator);
  EXPECT_EQ(ask(retriever, {"w1"}, 3), "0 1 2 of " + std::to_string(model.rows["w1"].size()));
  EXPECT_EQ(retriever->usedQueryAccel(), 1);
  ask(retriever, {"w5"}, 3);
  EXPECT_EQ(retriever->usedQueryAccel(), 0);
  retriever->tryQueryAcceleration(2);
  EXPECT_EQ(ask(retriever, {"w5"}, 3), "of 0");
  EXPECT_EQ(ask(retriever, {"w1"}, 4).substr(0, 3), "of ");  // too few
  EXPECT_EQ(ask(retriever, {"w1", "w2", "w3"}, 3).substr(0, 9), "0 1 2 of ");
  EXPECT_EQ(ask(retriever, {"w1", "w2", "w3", "w4"}, 3), "of 0");  // not tried
}

TEST(IkLocalRetriever, SurvivesDamage) {
  Model model(9, 200, 12);
  model.write("damaged");
  const std::string rows = bytesOf(model.root + ".dat");
  IkIndexInfo info;
  info.read((model.root + ".info").c_str());
  std::mt19937 random(4);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = rows;
    for (int i = 0; i < 20; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
    if (round % 3 == 0) bytes.resize(random() % bytes.size());
    writeBytes(model.root + ".dat", bytes);
    // Fewer documents than the rows have, or none.
    info.totalNumChunks = round % 4 != 0 ? 200 : static_cast<int>(random() % 3) * 70;
    info.write((model.root + ".info").c_str());
    IkLocalIndexBinder binder(model.root.c_str(), nullptr);
    IkRetrieverInput input;
    randomQuery(random, 12, round % 2 == 0).fill(input);
    std::vector<PrTuple> tuples;
    thrownBy([&] { tuples = answer(binder.localRetriever(), input, 10); });
    for (const PrTuple& tuple : tuples) EXPECT_LT(tuple.doc, info.totalNumChunks);
  }
  writeBytes(model.root + ".norm", model.norms.substr(1));
  info.totalNumChunks = 200;
  info.write((model.root + ".info").c_str());
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  EXPECT_NE(thrownBy([&] { binder.localRetriever(); }), "");
}

TEST(IkLocalRetriever, TakesManyTerms) {
  Model model(10, 60, 30);
  model.write("many");
  IkLocalIndexBinder binder(model.root.c_str(), nullptr);
  IkRetrieverInput input;
  input.newVirtualTerm()->weight = 1.0f;
  for (int i = 0; i < 100000; ++i) {
    const WmLocalWord word(wordNumber(i).c_str());
    input.add(word.word(), 1.0f);
    if (i < 1000) input.addVirtual(0, word.word(), 1.0f);
    input.pushOperation({IkRetrieverInput::kPushTerm, i});
    if (i > 0) input.pushOperation({IkRetrieverInput::kOr, 0});
  }
  for (const int junk : {0, -1, 1 << 30, 2, 2}) input.term(0)->elem->push(junk);
  std::set<int> docs;
  for (const auto& [word, row] : model.rows) {
    for (const auto& [doc, freq] : row) docs.insert(doc);
  }
  EXPECT_EQ(answer(binder.localRetriever(), input, 1 << 30).size(), docs.size());
}

}  // namespace
}  // namespace vandrelle
