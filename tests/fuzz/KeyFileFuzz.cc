// Damages a key file of any kind, chosen by the input's first byte, and does with it
// all that a caller may.
#include <memory>

#include "KeyFile/KfKeyFileManager.h"
#include "ThrownBy.h"
#include "fuzz/FuzzFolder.h"

namespace {

using namespace vandrelle;

constexpr int kFirstKind = 7;
constexpr int kKinds = 10;

bool isStopStyle(int kind) { return kind == 12 || kind == 13 || kind == 15; }

struct FuzzedKind {
  std::string root;
  DamagedFiles files;
};

// Short chunks, so that there are several.
void create(const std::string& root, int kind) {
  const std::unique_ptr<KdFileCreator> creator(
      KfKeyFileManager::KdCreate(root.c_str(), isStopStyle(kind) ? 128 : 90, kind, 4));
  for (const char* word : {"a",    "ab",   "abba", "abbas", "abd",  "b",    "baa",  "bab",  "bad",
                           "badd", "c",    "cab",  "cabba", "cad",  "d",    "dabb", "dada", "dadb",
                           "z",    "zaaa", "zaab", "zaac",  "zaad", "zaae", "zaaf", "zaag"}) {
    WmLocalWord replacement(word[1] != 0 ? "data" : "");
    if (isStopStyle(kind)) {
      creator->Add_Entry(word, word[1] != 0 ? replacement.word() : nullptr, 0);
    } else {
      creator->Add_Entry(word, "1234", kind == 11 && word[1] == 0 ? 0 : 4);
    }
  }
}

void exercise(KdFileAccessor* accessor, std::unique_ptr<KdStream>* stream) {
  // Beyond these a caller does not use it.
  if (accessor->Data_Size() > 65) return;
  char data[256];
  int32 size;
  int32 number;
  for (const char* text : {"", "a", "abc", "cab", "dab", "zaag", "zz"}) {
    WmLocalWord word(text);
    accessor->Lookup(word.word(), &size, data);
    accessor->Lookup(word.word(), &number);
  }
  for (int32 i = -1; i < 30; ++i) {
    WmLocalWord word;
    accessor->Lookup(i, word.word());
  }
  if (accessor->Num_Entries() > 5000) return;
  for (const char* start : {static_cast<const char*>(nullptr), "abd", "zz"}) {
    stream->reset(accessor->iterator());
    start == nullptr ? (*stream)->reset() : (*stream)->reset(WmLocalWord(start).word());
    while ((*stream)->more()) (*stream)->next();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static FuzzFolder folder;
  static FuzzedKind kinds[kKinds];
  if (size == 0) return 0;
  const int kind = kFirstKind + data[0] % kKinds;
  FuzzedKind& fuzzed = kinds[kind - kFirstKind];
  if (fuzzed.root.empty()) {
    fuzzed.root = folder / std::to_string(kind);
    create(fuzzed.root, kind);
    for (const char* suffix : {".ptr", ".key"}) fuzzed.files.add(fuzzed.root + suffix);
  }
  fuzzed.files.damage(data + 1, size - 1);
  std::unique_ptr<KdFileAccessor> accessor;
  std::unique_ptr<KdStream> stream;
  thrownBy([&] {
    accessor.reset(KfKeyFileManager::KdBind(fuzzed.root.c_str()));
    exercise(accessor.get(), &stream);
  });
  return 0;
}
