#include "Query/QlGather.h"

#include <algorithm>
#include <numeric>

#include "Index/IkIndexBinder.h"
#include "Index/IkTranspose.h"
#include "Query/QlGatherCreator.h"
#include "Query/QlGatherIterated.h"
#include "Query/QlGatherResult.h"
#include "Query/QlTriangleArray.h"

namespace vandrelle {

namespace {

// The state of a group average agglomeration. A group is known by the position of
// one of its documents; `members` is 0 for positions that have been merged away.
class Agglomeration {
 public:
  Agglomeration(IkTranspose* transpose, const int* docs, int numDocs)
      : similarity_(numDocs),
        members_(static_cast<std::size_t>(numDocs), 1),
        groups_(static_cast<std::size_t>(numDocs)) {
    std::iota(groups_.begin(), groups_.end(), 0);
    for (int i = 0; i < numDocs; ++i) {
      for (int j = 0; j < i; ++j) {
        similarity_.value(i, j, transpose->dotProduct(docs[i], docs[j]));
      }
    }
  }

  // Joins the two most alike groups, unless they are no more alike than
  // `threshold`.
  bool join(float threshold) {
    int from = -1;
    int to = -1;
    float best = 0;
    for (int i = 0; i < size(); ++i) {
      if (members(i) == 0) continue;
      for (int j = 0; j < i; ++j) {
        const float value = similarity_.value(i, j);
        if (value > best && group(i) != group(j)) {
          best = value;
          from = i;
          to = j;
        }
      }
    }
    if (from < 0 || best <= threshold) return false;
    merge(from, to);
    return true;
  }

  // The groups, numbered without gaps in the order in which they first appear.
  std::vector<int> denseGroups() const {
    std::vector<int> number(groups_.size(), -1);
    std::vector<int> dense;
    int next = 0;
    for (const int group : groups_) {
      int& known = number[static_cast<std::size_t>(group)];
      if (known < 0) known = next++;
      dense.push_back(known);
    }
    return dense;
  }

 private:
  int size() const { return static_cast<int>(members_.size()); }
  int& members(int i) { return members_[static_cast<std::size_t>(i)]; }
  int group(int i) const { return groups_[static_cast<std::size_t>(i)]; }

  void merge(int from, int to) {
    const float fromCount = static_cast<float>(members(from));
    const float toCount = static_cast<float>(members(to));
    for (int i = 0; i < size(); ++i) {
      if (members(i) == 0 || i == from || i == to) continue;
      const float sum = similarity_.value(i, to) * toCount + similarity_.value(i, from) * fromCount;
      similarity_.value(i, to, sum / (toCount + fromCount));
      similarity_.value(i, from, 0);
    }
    members(to) += members(from);
    members(from) = 0;
    const int joined = group(to);
    std::replace(groups_.begin(), groups_.end(), group(from), joined);
  }

  QlTriangleArray similarity_;
  std::vector<int> members_;
  std::vector<int> groups_;
};

}  // namespace

QlGather* QlGather::GatherDD(IkIndexBinder* index) { return new QlGatherMax(index); }

QlGather* QlGather::GatherCentroid(IkIndexBinder* index) { return new QlGatherAvg(index); }

QlGather* QlGather::GatherIterDD(IkIndexBinder* index) {
  return new QlGatherIterated(index, new QlGatherMax(index));
}

QlGather* QlGather::GatherIterCentroid(IkIndexBinder* index) {
  return new QlGatherIterated(index, new QlGatherAvg(index));
}

PrNodeCreator* QlGather::GatherDDCreator(IkIndexBinder* index) {
  return new QlGatherCreator(index, QlGatherCreator::Method::kDD);
}

PrNodeCreator* QlGather::GatherCentroidCreator(IkIndexBinder* index) {
  return new QlGatherCreator(index, QlGatherCreator::Method::kCentroid);
}

PrNodeCreator* QlGather::GatherIterDDCreator(IkIndexBinder* index) {
  return new QlGatherCreator(index, QlGatherCreator::Method::kIterDD);
}

PrNodeCreator* QlGather::GatherIterCentroidCreator(IkIndexBinder* index) {
  return new QlGatherCreator(index, QlGatherCreator::Method::kIterCentroid);
}

QlGatherImpl::QlGatherImpl(IkIndexBinder* index)
    : transpose_(index->transpose()), wordTable_(index->wordTable()) {}

QlGatherResult* QlGatherAvg::gather(const int* docs, int numDocs) {
  Agglomeration agglomeration(transpose_, docs, numDocs);
  int groups = numDocs;
  while (groups > numGroups_ && agglomeration.join(threshGroup_)) --groups;
  return new QlGatherResultArrayAuto(transpose_, wordTable_, agglomeration.denseGroups().data(),
                                     docs, numDocs);
}

QlGatherResult* QlGatherMax::gather(const int* docs, int numDocs) {
  std::vector<int> groups(static_cast<std::size_t>(numDocs));
  std::iota(groups.begin(), groups.end(), 0);
  int groupCount = numDocs;
  for (const Pair& pair : createMaxList(docs, numDocs)) {
    if (pair.similarity < threshGroup_ || pair.similarity == 0 || groupCount <= numGroups_) break;
    const int first = groups[static_cast<std::size_t>(pair.first)];
    const int second = groups[static_cast<std::size_t>(pair.second)];
    if (first == second) continue;
    groupImpl(&groups, first, second);
    --groupCount;
  }
  return new QlGatherResultArrayAuto(transpose_, wordTable_, groups.data(), docs, numDocs);
}

std::vector<QlGatherMax::Pair> QlGatherMax::createMaxList(const int* docs, int numDocs) const {
  std::vector<Pair> pairs;
  for (int i = 0; i < numDocs; ++i) {
    for (int j = i + 1; j < numDocs; ++j) {
      pairs.push_back(Pair{i, j, transpose_->dotProduct(docs[i], docs[j])});
    }
  }
  sortGatherData(&pairs);
  return pairs;
}

void QlGatherMax::sortGatherData(std::vector<Pair>* pairs) {
  std::stable_sort(pairs->begin(), pairs->end(),
                   [](const Pair& a, const Pair& b) { return a.similarity > b.similarity; });
}

void QlGatherMax::groupImpl(std::vector<int>* groups, int first, int second) {
  const auto [kept, gone] = std::minmax(first, second);
  for (int& group : *groups) {
    if (group == gone) {
      group = kept;
    } else if (group > gone) {
      --group;
    }
  }
}

}  // namespace vandrelle
