// Damages a proximity file and its map, and reads the positions of all words.
#include <memory>

#include "Index/IkProxBinder.h"
#include "Index/IkProxCreator.h"
#include "Storage/StPosMapCreator.h"
#include "ThrownBy.h"
#include "fuzz/FuzzFolder.h"

namespace {

using namespace vandrelle;

constexpr uint32 kWords = 40;

void create(const std::string& path) {
  IkProxCreator creator(path.c_str());
  StPosMapCreator map((path + ".map").c_str(), 16);
  for (uint32 word = 0; word < kWords; ++word) {
    creator.reset();
    for (uint32 i = 0; i < word % 5; ++i) creator.add(word * 70 * i);
    map.add(creator.tell());
  }
  map.add(creator.tell());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const FuzzFolder folder;
  static const std::string path = folder / "words.prx";
  static const DamagedFiles files = [] {
    DamagedFiles sound;
    create(path);
    for (const char* suffix : {".map", ""}) sound.add(path + suffix);
    return sound;
  }();
  files.damage(data, size);
  std::unique_ptr<IkProxBinder> binder;
  std::unique_ptr<IkProxBuffer> buffer;
  for (uint32 word = 0; word < kWords + 2; ++word) {
    // A word that is lost says nothing of the next.
    thrownBy([&] {
      if (!binder) binder = std::make_unique<IkProxBinder>(path.c_str());
      buffer.reset(binder->getBuffer(word));
      const IkProxBufferState begin = buffer->state();
      for (uint32 i = 0; i < word % 5; ++i) buffer->get();
      buffer->state(begin);
      buffer->skip(word % 7);
    });
  }
  thrownBy([&] {
    binder->seek(StStoragePos());
    for (;;) binder->get();
  });
  return 0;
}
