// Operations on whole field databases.

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Document/DcFieldBag.h"
#include "Document/DcFieldsBinder.h"
#include "Document/DcFieldsCreator.h"
#include "Document/TempFnameCreator.h"
#include "Fun/FdStream.h"
#include "Storage/StFileStorage.h"
#include "Tool/HeapText.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr const char* kValueSuffix = ".fld.val";
constexpr const char* kSlowSuffixes[] = {".fld.ptr", ".fld.lst", kValueSuffix, ".fld.nam"};
constexpr int kUnlinkTries = 20;

// Values may have outgrown one file on either side.
bool copyStorage(const char* from, const char* to) {
  if (!SysTools::fileExists(from)) return false;
  StStorageStream in(from, StStorageStream::kRead | StStorageStream::kExisting);
  StStorageStream out(to, StStorageStream::kWrite);
  char bytes[StStorageStream::kBufferBytes];
  while (const unsigned length = in.read(bytes, sizeof bytes)) out.write(bytes, length);
  return true;
}

bool copyFile(const char* from, const char* to) {
  std::ifstream in(from, std::ios::binary);
  std::ofstream out(to, std::ios::binary | std::ios::trunc);
  if (!in || !out) return false;
  if (in.peek() != std::ifstream::traits_type::eof()) out << in.rdbuf();
  out.close();
  return !in.bad() && !out.fail();
}

void addChosenFields(DcFieldsBinder* source, DcFieldsCreator* target, int doc, FdStream* names) {
  for (names->reset(); names->more(); names->next()) {
    const char* name = static_cast<const char*>(names->key());
    HeapAptr<char> value(source->retrieve(doc, name));
    if (value) {
      target->add(name, value.get());
    } else if (doc == 0) {
      target->add(name, "");  // so that the name is entered
    }
  }
}

}  // namespace

bool DcFieldsCreator::permute(const unary_fct<uint32, uint32>& perm, const char* root) {
  const NameManager name(root, 20);
  const std::string path = name.suffix(".fld.ptr");
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  const std::vector<char> entries{std::istreambuf_iterator<char>(in), {}};
  if (entries.size() % kPtrBytes != 0) return false;
  const uint32 count = static_cast<uint32>(entries.size() / kPtrBytes);
  std::vector<char> permuted;
  permuted.reserve(entries.size());
  for (uint32 i = 0; i < count; ++i) {
    const uint32 from = perm(i);
    if (from >= count) return false;
    const char* entry = &entries[std::size_t{from} * kPtrBytes];
    permuted.insert(permuted.end(), entry, entry + kPtrBytes);
  }
  TempFnameCreator names(path.c_str());
  const HeapAptr<char> temporary(names.fname());
  if (!temporary) return false;
  std::ofstream out(temporary.get(), std::ios::binary | std::ios::trunc);
  out.write(permuted.data(), static_cast<std::streamsize>(permuted.size()));
  out.close();
  if (!out.fail() && std::rename(temporary.get(), path.c_str()) == 0) return true;
  std::remove(temporary.get());
  return false;
}

bool DcFieldsCreator::copy(const char* src_root, const char* dst_root) {
  if (src_root == nullptr || dst_root == nullptr) return false;
  if (std::string(src_root) == dst_root) return true;
  const NameManager source(src_root, 20);
  const NameManager target(dst_root, 20);
  for (const char* suffix : kSlowSuffixes) {
    const auto copyOne = suffix == kValueSuffix ? copyStorage : copyFile;
    if (!copyOne(source.suffix(suffix), target.suffix(suffix))) return false;
  }
  return true;
}

bool DcFieldsCreator::remove(const char* root) {
  const NameManager name(root, 20);
  for (const char* suffix : kSlowSuffixes) {
    // The values may have grown to several files.
    if (suffix == kValueSuffix && StFileStorage::Remove(name.suffix(suffix))) continue;
    int tries = 0;
    while (::unlink(name.suffix(suffix)) != 0) {
      if (errno != EINTR || ++tries == kUnlinkTries) return false;
    }
  }
  return true;
}

bool DcFieldsCreator::merge(const char* src_root, const char* dst_root, DcFieldBag* fieldBag,
                            FdBag* conversions, int docnum) {
  if (src_root == nullptr || dst_root == nullptr || std::string(src_root) == dst_root) return false;
  DcFieldsBinder source(src_root);
  DcFieldsCreator target(dst_root, 1);
  if (!source.valid() || !target.valid()) return false;
  if (conversions != nullptr) source.equate(conversions);
  if (docnum > static_cast<int>(target.mainEnd_ / kPtrBytes)) return false;
  if (docnum >= 0) target.gotoDoc(docnum);
  std::unique_ptr<FdStream> names(fieldBag != nullptr ? fieldBag->iterator() : nullptr);
  for (int doc = 0; doc < source.numDocuments(); ++doc) {
    if (names) {
      addChosenFields(&source, &target, doc, names.get());
    } else {
      source.gotoDoc(doc);
      for (DcFieldInfo field; source.getField(field);) {
        target.add(field.name.get(), field.value.get());
      }
    }
    target.endDoc();
  }
  target.restoreTail();
  target.flush();
  return source.valid() && target.valid();
}

}  // namespace vandrelle
