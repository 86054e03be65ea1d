// The hook by which an application adds document types of its own, numbered
// from 2048. The defaults add nothing.
#pragma once

namespace vandrelle {

class DcDocumentManager;
class DcMetaDocManager;
class DcPartialIndexCreator;
struct HelperStruct;

class DcUserTypes {
 public:
  virtual ~DcUserTypes() = default;

  // For types from 32768: the creator that adds such files and the manager that
  // reads them back. New objects, owned by the caller, or null.
  virtual DcPartialIndexCreator* userCreator(const char* /*root*/, int /*type*/) { return nullptr; }
  virtual DcDocumentManager* userManager(const char* /*root*/, int /*type*/,
                                         DcMetaDocManager* /*mmgr*/) {
    return nullptr;
  }

  // For types from 2048 to 32767: the helpers, which stay the application's.
  virtual HelperStruct* userHelpers(int /*type*/) { return nullptr; }

  // Non-zero when files of the type hold more than one document.
  virtual int multiDocFiles(int /*type*/) { return 0; }
};

}  // namespace vandrelle
