// Making of the fast form of the field database, from the slow one or by appending.

#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "Document/DcFieldBag.h"
#include "Document/DcFieldFilter.h"
#include "Document/DcFieldNames.h"
#include "Document/DcFieldsBinder.h"
#include "Document/DcFieldsCreator.h"
#include "Fun/FdStream.h"
#include "Index/IkMergeDeleter.h"
#include "Tool/HeapText.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

// Gathers the 5-byte positions of .fidx and writes whole numbers of them.
class FastIndexWriter {
 public:
  explicit FastIndexWriter(const char* path)
      : file_(path, std::ios::binary | std::ios::out | std::ios::trunc) {}

  void add(const StStoragePos& position) {
    storeFastPosition(buffer_ + used_, position);
    used_ += kFastPositionBytes;
    if (used_ == kBufferBytes) flush();
  }

  bool finish() {
    flush();
    file_.close();
    return !file_.fail();
  }

 private:
  static constexpr int kBufferBytes = 1020;

  void flush() {
    file_.write(reinterpret_cast<const char*>(buffer_), used_);
    used_ = 0;
  }

  std::ofstream file_;
  unsigned char buffer_[kBufferBytes];
  int used_ = 0;
};

}  // namespace

bool DcFieldsBinder::createFastFiles(DcFieldBag* fields, DcFieldFilter* filter, FdBag* conversions,
                                     const char* sroot, const char* droot) {
  if (droot == nullptr) droot = sroot;
  if (fields == nullptr && filter == nullptr) return createFastIdx(sroot, droot);
  if (fields == nullptr) return false;
  DcFieldsBinder binder(sroot);
  std::unique_ptr<FdStream> names(fields->iterator());
  names->reset();
  if (!binder.valid() || binder.numDocuments() == 0 || !names->more()) return false;
  if (conversions != nullptr) binder.equate(conversions);

  const NameManager root(droot, 20);
  FastIndexWriter index(root.suffix(".fidx"));
  std::ofstream nameFile(root.suffix(".fnam"), std::ios::binary | std::ios::trunc);
  StStorageStream data(root.suffix(".fdat"), StStorageStream::kWrite);
  if (!data.isOpen()) return false;
  for (int doc = 0; doc < binder.numDocuments(); ++doc) {
    index.add(data.tell());
    for (names->reset(); names->more(); names->next()) {
      const char* name = static_cast<const char*>(names->key());
      if (doc == 0) nameFile.write(name, static_cast<std::streamsize>(std::strlen(name) + 1));
      HeapAptr<char> value(binder.retrieve(doc, name));
      if (filter != nullptr) value.reset(filter->filterText(value.get(), name));
      const char* text = value ? value.get() : "";
      data.write(text, static_cast<unsigned>(std::strlen(text) + 1));
    }
  }
  data.close();
  nameFile.close();
  return index.finish() && !nameFile.fail() && binder.valid();
}

bool DcFieldsBinder::createFastIdx(const char* sroot, const char* droot) {
  const NameManager source(sroot, 20);
  const NameManager target(droot, 20);
  DcSourceStream main;
  DcSourceStream list;
  if (!main.open(source.suffix(".fld.ptr")) || !list.open(source.suffix(".fld.lst"))) return false;
  FastIndexWriter index(target.suffix(".fidx"));
  for (char entry[DcFieldsCreator::kPtrBytes]; main.read(entry, sizeof entry);) {
    char record[DcFieldsCreator::kRecordBytes];
    list.seekg(loadU32(entry));
    if (!list.read(record, sizeof record)) return false;
    index.add(StStoragePos(loadU32(record + 2), loadU32(record + 6)));
  }
  return index.finish();
}

bool DcFieldsCreator::mergeFastFields(const char* src_root, const char* dst_root,
                                      IkMergeDeleter* deleter) {
  if (src_root == nullptr || dst_root == nullptr || std::string(src_root) == dst_root) return false;
  const NameManager source(src_root, 20);
  const NameManager target(dst_root, 20);
  if (!SysTools::fileExists(source.suffix(".fdat"))) return false;
  DcFieldsBinder binder(src_root);
  // Where the slow form is there too, it is the fast one that counts.
  if (!binder.valid() || !binder.fastFilesOn(src_root) || !binder.gotoDoc(0)) return false;
  std::ofstream index(target.suffix(".fidx"), std::ios::binary | std::ios::app);
  StStorageStream values(target.suffix(".fdat"), StStorageStream::kRead | StStorageStream::kWrite |
                                                     StStorageStream::kAtEnd);
  StStorageStream from(source.suffix(".fdat"), StStorageStream::kRead | StStorageStream::kExisting);
  if (!index) return false;
  int fields = 0;
  for (DcFieldInfo field; binder.getField(field);) ++fields;

  for (int doc = 0; doc < binder.numDocuments(); ++doc) {
    std::string strings;
    for (int i = 0; i < fields;) {
      const int c = from.get();
      if (c < 0) return false;
      strings.push_back(static_cast<char>(c));
      if (c == 0) ++i;
    }
    if (deleter != nullptr && deleter->newChunk(doc) == IkMergeDeleter::kGone) continue;
    unsigned char position[kFastPositionBytes];
    storeFastPosition(position, values.tell());
    index.write(reinterpret_cast<const char*>(position), kFastPositionBytes);
    values.write(strings.data(), static_cast<unsigned>(strings.size()));
  }
  values.close();
  index.close();
  return !index.fail();
}

}  // namespace vandrelle
