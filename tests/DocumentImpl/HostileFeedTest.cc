// Every feed layout against what disks and senders do to files: damaged copies of
// the examples are listed in one run with two good ones, and all that was taken is
// read. The good copies are to come out as if nothing stood between them.
#include <algorithm>

#include "Document/DcDataType.h"
#include "Document/DcDocumentManager.h"
#include "Document/DcFieldBag.h"
#include "Document/DcHeaderDocument.h"
#include "Document/DcManager.h"
#include "Document/DcMetaIndexCreator.h"
#include "Document/IntakeFixture.h"
#include "Token/TkStemmer.h"

namespace vandrelle {
namespace {

constexpr int kPlaces = 80;            // of each kind of damage to a file
constexpr int kCompressedPlaces = 10;  // each costs two processes
constexpr std::size_t kRandomBytes = 1000000;
constexpr std::size_t kLineBytes = 10000000;

class HostileFeed : public IntakeTest, public testing::WithParamInterface<int> {
 protected:
  HostileFeed() {
    const std::filesystem::path examples(VANDRELLE_SOURCE_DIR "/examples/feeds");
    for (const auto& entry : std::filesystem::directory_iterator(examples)) {
      if (std::stoi(entry.path().filename().string()) == GetParam()) {
        good_ = read(entry.path());
        ending_ = entry.path().extension();
      }
    }
  }

  int add(const std::string& text) {
    const std::string name = "feed" + std::to_string(++files_) + ending_;
    return creator_->Add(write(name, text).c_str());
  }

  void addDamaged() {
    const std::size_t places =
        GetParam() == DcDataType::kCompressedDump ? kCompressedPlaces : kPlaces;
    const std::size_t step = std::max<std::size_t>(good_.size() / places, 1);
    for (std::size_t at = 0; at < good_.size(); at += step) {
      add(good_.substr(0, at));
      for (const int bits : {0x80, 0x0f}) add(flipped(good_, at, bits));
    }
    add(noise(kRandomBytes));
    add(good_ + noise(kRandomBytes));
    add(std::string(kLineBytes, 'x'));
    add(good_ + std::string(kLineBytes, ' '));
  }

  // Title and words of a document; null documents have none.
  std::string textOf(DcDocumentManager* manager, int number) {
    const std::unique_ptr<DcDocument> document(manager->documentNum(number));
    if (document == nullptr) return "(null)";
    const HeapAptr<char> title(static_cast<DcHeaderDocument*>(document.get())->getHeader("title"));
    return std::string(title == nullptr ? "(null)" : title.get()) + ' ' + wordsOf(document.get());
  }

  std::string good_, ending_;
  int files_ = 0;
  std::unique_ptr<DcMetaIndexCreator> creator_;
};

TEST_P(HostileFeed, LeavesTheOthersAlone) {
  ASSERT_NE(good_, "");
  const std::string root = path("root");
  if (GetParam() == DcDataType::kRtf) {
    // Numbers of letters that fit nothing.
    std::string table;
    for (int i = 0; i < 400; ++i)
      table += {i % 9 == 0 ? '\xff' : '\0', '\0', '\0', static_cast<char>(i)};
    write("root.sep", table);
  }
  DcFieldBag fields(0, 0);
  fields.Add("title", 0);
  creator_.reset(DcManager::SingleIndexCreator(root.c_str(), GetParam(), 0, nullptr));
  creator_->specifyFields(&fields);
  const int first = add(good_);
  EXPECT_GT(first, 0);
  addDamaged();
  const int last = add(good_);
  creator_->DoneAddingDocs();
  EXPECT_TRUE(first == last || GetParam() == DcDataType::kRtf) << first << " and " << last;

  TkPassStem stemmer;
  std::unique_ptr<DcDocumentManager> manager(
      DcManager::getDocManager(root.c_str(), &stemmer, nullptr, nullptr));
  const int total = manager->numDocuments();
  std::vector<std::string> texts;
  for (int number = 0; number < total; ++number) {
    std::string text = textOf(manager.get(), number);
    if (number < first || number >= total - last) texts.push_back(std::move(text));
  }
  // Only articles with a header keep their places behind the first one of a run.
  const bool placed = GetParam() != DcDataType::kUsenetText && GetParam() != DcDataType::kRtf &&
                      GetParam() != DcDataType::kCompressedDump;
  for (int i = 0; placed && i < last; ++i) {
    EXPECT_EQ(texts[static_cast<std::size_t>(i)], texts[static_cast<std::size_t>(first + i)]) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Types, HostileFeed, testing::Range(1, 15));

}  // namespace
}  // namespace vandrelle
