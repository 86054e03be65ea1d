#include "KeyFile/KfKeyFileManager.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "KeyFile/KdFileALAccessor.h"
#include "KeyFile/KdFileALCreator.h"
#include "KeyFile/KdInlineCreate.h"
#include "KeyFile/KdMmapAccessor.h"
#include "KeyFile/KdMmapCreator.h"
#include "KeyFile/KdMmapStopAccessor.h"
#include "KeyFile/KdMmapStopCreator.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

KdFileAccessor* bindKind(const char* filename, const char* ptr_name, int32 code, int accessType,
                         std::ifstream* ptr_file, int keyfile_fd) {
  switch (code) {
    case kKdPackedVarying:
    case kKdVarying:
      return new KdFileALAccessorVar(ptr_file, keyfile_fd);
    case kKdPackedConstant:
    case kKdConstant:
      return new KdFileALAccessorCon(ptr_file, keyfile_fd);
    case kKdInline:
      return new KdInlineAcc(ptr_file, keyfile_fd);
    case kKdMappedPointers:
    case kKdMapped:
      if (accessType == 0) accessType = code;
      if (accessType != kKdMappedPointers && accessType != kKdMapped) {
        THROW(KdAccess, "This parameter is only used for mem-maps" << accessType);
      }
      ptr_file->close();
      return new KdMmapAccessor(filename, accessType, keyfile_fd);
    case kKdStop:
    case kKdStopToo:
      return new KdStopAccessor(ptr_file, keyfile_fd);
    case kKdMappedStop:
      ptr_file->close();
      return new KdMmapStopAccessor(ptr_name, keyfile_fd);
    default:
      THROW(KdAccess, "Unexpected field in pointer file.");
  }
}

}  // namespace

KdFileCreator* KfKeyFileManager::KdCreate(const char* file_name, int32 chunk_size,
                                          int32 this_file_type, int32 data_size) {
  switch (this_file_type) {
    case kKdPackedVarying:
    case kKdVarying:
      return new KdFileALCreator(file_name, chunk_size, -1, this_file_type);
    case kKdPackedConstant:
    case kKdConstant:
      return new KdFileALCreator(file_name, chunk_size, data_size, this_file_type);
    case kKdInline:
      return new KdInlineCreate(file_name, chunk_size, data_size, this_file_type);
    case kKdMappedPointers:
    case kKdMapped:
      return new KdMmapCreator(file_name, chunk_size, data_size, this_file_type);
    case kKdStop:
    case kKdStopToo:
      return new KdStopCreator(file_name, chunk_size, data_size, this_file_type);
    case kKdMappedStop:
      return new KdMmapStopCreator(file_name, chunk_size, data_size, this_file_type);
    default:
      THROW(KdCreate, "Invalid type passed to KdCreate");
  }
}

KdFileAccessor* KfKeyFileManager::KdBind(const char* filename, int accessType) {
  NameManager names(filename);
  const int keyfile_fd = open(names.suffix(".key"), O_RDONLY | O_CLOEXEC);
  if (keyfile_fd < 0) THROW(KdAccess, "Can't open key file " << names.suffix(".key"));
  std::ifstream ptr_file(names.suffix(".ptr"), std::ios::binary);

  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    if (!ptr_file) THROW(KdAccess, "Can't open pointer file: " << names.suffix(".ptr"));
    char code[4] = {};
    ptr_file.read(code, sizeof code);
    if (!ptr_file) THROW(KdAccess, "Unexpected field in pointer file.");
    ptr_file.seekg(0);
    return bindKind(filename, names.suffix(".ptr"), loadS32(code), accessType, &ptr_file,
                    keyfile_fd);
  }
  environment.restore_env();
  ptr_file.close();
  close(keyfile_fd);
  ExceptionManager::instance()->do_throw();
}

void KfKeyFileManager::ConvertPtrFileToMmap(const char* rootname) {
  const std::string root(rootname);
  const std::string ptr = root + ".ptr";
  if (!SysTools::fileExists(ptr.c_str())) {
    THROW(KdAccess, "Pointer file doesn't exist; cannot convert to mmap version.");
  }
  std::ifstream in(ptr, std::ios::binary);
  const std::vector<unsigned char> content = KdReadWholeFile(&in);
  if (content.size() < KdHeader::kBytes) THROW(KdAccess, "Error reading pointer file.");
  const int32 num_chunks = KdHeader::load(content.data()).num_chunks;
  if (num_chunks == 0) THROW(KdAccess, "No entries in ptr file.");
  std::vector<unsigned char> records;
  std::vector<unsigned char> words;
  if (!KdFileALAccessor::Read_Pointers(content.data() + KdHeader::kBytes,
                                       content.size() - KdHeader::kBytes, num_chunks, &records,
                                       &words)) {
    THROW(KdAccess, "Error reading pointer file.");
  }
  char header[KdHeader::kBytes];
  std::memcpy(header, content.data(), sizeof header);
  storeS32(header, kKdMappedPointers);
  std::ofstream out(root + ".new", std::ios::trunc | std::ios::binary);
  out.write(header, sizeof header);
  out.write(reinterpret_cast<const char*>(records.data()),
            static_cast<std::streamsize>(records.size()));
  out.write(reinterpret_cast<const char*>(words.data()),
            static_cast<std::streamsize>(words.size()));
  out.close();
  if (!out) THROW(IO, "Error writing pointer file.");
  if (std::rename(ptr.c_str(), (ptr + ".old").c_str()) != 0) {
    THROW(KdAccess, "Couldn't rename .ptr to .ptr.old.");
  }
  if (std::rename((root + ".new").c_str(), ptr.c_str()) != 0) {
    THROW(KdAccess, "Couldn't rename .new to .ptr.");
  }
}

}  // namespace vandrelle
