// Damages the list of deleted documents, asks for some and deletes some.
#include <climits>
#include <memory>

#include "Index/IkDeleterVector.h"
#include "ThrownBy.h"
#include "fuzz/FuzzFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vandrelle;
  constexpr int kDocuments = 75;
  static const FuzzFolder folder;
  static const std::string root = folder / "index";
  static const DamagedFiles files = [] {
    const std::unique_ptr<IkDeleterVector> vector(
        IkDeleterVector::Create(root.c_str(), kDocuments, 0));
    for (const int doc : {0, 7, 8, 40, 74}) vector->deleteDocument(doc);
    vector->done();
    vector->freeze();
    DamagedFiles sound;
    sound.add(root + ".xk");
    return sound;
  }();
  files.damage(data, size);
  for (const int readOnly : {1, 0}) {
    std::unique_ptr<IkDeleterVector> vector;
    thrownBy([&] {
      vector.reset(IkDeleterVector::Bind(root.c_str(), kDocuments + 3, readOnly));
      for (const int doc : {INT_MIN, -1, 0, 74, 75, 80, 4000, INT_MAX}) vector->isDeleted(doc);
    });
    if (readOnly || !vector) continue;
    for (const int doc : {0, 1, kDocuments + 2, kDocuments + 3, 4000, INT_MAX}) {
      thrownBy([&] { vector->deleteDocument(doc); });
    }
    thrownBy([&] { vector->done(); });
    thrownBy([&] { vector->freeze(); });
  }
  return 0;
}
