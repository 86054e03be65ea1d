#include "Document/DcManager.h"

#include "Document/DcManagerManager.h"
#include "Document/DcMetaDocManager.h"
#include "Document/DcMetaIndexCreatorImpl.h"

namespace vandrelle {

DcManagerManager* DcManager::ManagerManager() { return new DcManagerManager; }

DcMetaIndexCreator* DcManager::getMetaIndexCreator(const char* root, short info,
                                                   DcUserTypes* types) {
  return new DcMetaIndexCreatorImpl(root, info, types);
}

DcMetaIndexCreator* DcManager::SingleIndexCreator(const char* root, int type, short info,
                                                  DcUserTypes* types) {
  DcMetaIndexCreator* creator = getMetaIndexCreator(root, info, types);
  creator->excludeBadEndings();
  creator->addDataType(".", type, 0);
  creator->DoneWithDataTypes();
  return creator;
}

DcDocumentManager* DcManager::getDocManager(const char* root, TkStemmer* stemmer,
                                            DcFieldParser* fieldParser, DcUserTypes* types) {
  return new DcMetaDocManager(root, stemmer, fieldParser, types);
}

}  // namespace vandrelle
