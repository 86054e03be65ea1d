// The factory of index creators and document managers.
#pragma once

namespace vandrelle {

class DcDocumentManager;
class DcFieldParser;
class DcManagerManager;
class DcMetaIndexCreator;
class DcUserTypes;
class TkStemmer;

// All results are new objects that the caller owns; null is allowed for the field
// parser and the user types.
class DcManager {
 public:
  static DcManagerManager* ManagerManager();

  // `info`: 0 for a new index, 2 to add to an existing one.
  static DcMetaIndexCreator* getMetaIndexCreator(const char* root, short info, DcUserTypes* types);

  // A creator that gives every file the one type, except for the usual endings
  // of files without text.
  static DcMetaIndexCreator* SingleIndexCreator(const char* root, int type, short info,
                                                DcUserTypes* types);

  // Binds to the index `root`. Throws _Exception_FileMgr when there is none.
  static DcDocumentManager* getDocManager(const char* root, TkStemmer* stemmer,
                                          DcFieldParser* fieldParser, DcUserTypes* types);
};

}  // namespace vandrelle
