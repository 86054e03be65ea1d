// Makes the writers and readers of key files: by the caller's KdKind when a file
// is written, by the code at the beginning of <root>.ptr when it is read.
// Kinds 14 and 16 are the same bytes; which way of reading counts, the binder of a
// file may choose.
#pragma once

#include "KeyFile.h"

namespace vandrelle {

class KfKeyFileManager {
 public:
  KfKeyFileManager() = delete;

  // A writer, owned by the caller. `file_name` is the root name, sizes are in
  // bytes. Throws _Exception_KdCreate for a code that does not exist, and what the
  // writer throws.
  static KdFileCreator* KdCreate(const char* file_name, int32 chunk_size, int32 this_file_type,
                                 int32 data_size);

  // A reader, owned by the caller. `accessType` counts for kinds 14 and 16 only:
  // one of them, or 0 for the kind in the file. Throws _Exception_KdAccess, and
  // what the reader throws.
  static KdFileAccessor* KdBind(const char* filename, int accessType = 0);

  // Maintenance: gives the pointer file of a file of kind 9 the form of kind 14.
  // The kind isn't tested. The old one stays as <root>.ptr.old. Throws
  // _Exception_KdAccess.
  static void ConvertPtrFileToMmap(const char* rootname);
};

}  // namespace vandrelle
