#include "Query/QlGatherCreator.h"

#include <strings.h>

#include <algorithm>
#include <string>

#include "Index/IkIndexBinder.h"
#include "Index/IkTranspose.h"
#include "Parser/PrArgParser.h"
#include "Parser/PrParserError.h"
#include "Parser/PrParserNode.h"
#include "Query/QlGatherIterated.h"
#include "Query/QlGatherResult.h"

namespace vandrelle {

namespace {

using Method = QlGatherCreator::Method;

bool readMethod(const char* name, Method* method) {
  static constexpr struct {
    const char* name;
    Method method;
  } kMethods[] = {{"dd", Method::kDD},
                  {"avg", Method::kCentroid},
                  {"idd", Method::kIterDD},
                  {"iavg", Method::kIterCentroid}};
  for (const auto& known : kMethods) {
    if (strcasecmp(name, known.name) != 0) continue;
    *method = known.method;
    return true;
  }
  return false;
}

// The documents of all nodes that have a digest, rising, each once.
std::vector<int> documentsOf(const PrArgParser& arguments, int numDocs) {
  std::vector<int> docs;
  for (int i = 0; i < arguments.numNodes(); ++i) {
    // Not beyond the index: a node may have no end.
    arguments.node(i)->forEach([&](int doc, float) {
      if (doc >= 0 && doc < numDocs) docs.push_back(doc);
      return doc < numDocs;
    });
  }
  std::sort(docs.begin(), docs.end());
  docs.erase(std::unique(docs.begin(), docs.end()), docs.end());
  return docs;
}

std::unique_ptr<QlGatherImpl> makeGather(IkIndexBinder* index, Method method,
                                         const PrArgParser& arguments) {
  std::unique_ptr<QlGatherImpl> gather;
  if (method == Method::kDD || method == Method::kIterDD) {
    gather = std::make_unique<QlGatherMax>(index);
  } else {
    gather = std::make_unique<QlGatherAvg>(index);
  }
  if (method == Method::kIterDD || method == Method::kIterCentroid) {
    auto iterated = std::make_unique<QlGatherIterated>(index, gather.release());
    const int sample = arguments.int_arg("fid", QlGatherIterated::kFirstIterDocuments);
    iterated->firstIterDocuments(std::clamp(sample, 1, QlGatherCreator::kMaxCompared));
    const int words = arguments.int_arg("gv", QlGatherIterated::kVectorSize);
    iterated->gvsize(std::clamp(words, 0, QlGatherCreator::kMaxVectorSize));
    iterated->truncatedSize(std::max(arguments.int_arg("trunc", 0), 0));
    gather = std::move(iterated);
  }
  gather->numGroups(arguments.int_arg("g", gather->numGroups()));
  gather->threshGroup(arguments.float_arg("t", gather->threshGroup()));
  return gather;
}

}  // namespace

QlGatherCreator::QlGatherCreator(IkIndexBinder* index, Method method)
    : index_(index), method_(method) {}

QlGatherCreator::~QlGatherCreator() = default;

int QlGatherCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                               PrParserError* err) {
  if (err->query() != query_) results_.clear();
  query_ = err->query();
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (arguments.numNodes() == 0) {
    err->fail("This operator requires at least one node, of the documents to gather");
    return 0;
  }
  if (arguments.numStrings() > 0) err->warn("This operator does not accept plain arguments");
  Method method = method_;
  const char* name = arguments.str_arg("m", nullptr);
  if (name != nullptr && !readMethod(name, &method)) {
    err->fail("There is no method '" + std::string(name) + "', only dd, avg, idd and iavg");
    return 0;
  }
  const std::vector<int> docs = documentsOf(arguments, index_->transpose()->numDocs());
  const bool sampled = method == Method::kIterDD || method == Method::kIterCentroid;
  if (!sampled && docs.size() > kMaxCompared) {
    err->fail("More than " + std::to_string(kMaxCompared) +
              " documents are gathered by idd and iavg only");
    return 0;
  }
  const std::unique_ptr<QlGatherImpl> gather = makeGather(index_, method, arguments);
  results_.emplace_back(gather->gather(docs.data(), static_cast<int>(docs.size())));
  result->type = kGroups;
  result->object = results_.back().get();
  result->parserDelete = 0;
  return 1;
}

}  // namespace vandrelle
