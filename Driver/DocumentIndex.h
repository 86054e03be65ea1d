// The first stage of a run: turns what the user named into the document list
// and the field database, before any word is indexed.
#pragma once

namespace vandrelle {

class DcFieldParser;
class DcMetaIndexCreator;
class DcUserTypes;
class FdSStream;
class NameManager;
class TkStemmer;
class VandrelleLogIostream;

// Lists the documents of all sources: the names in `filelist`, those in
// `userlist`, the rest of `restArgs`, and `spiderdir` last; of the four any may be
// null or empty, but not all. `mode_mask` as for INDEX_CREATOR. `summaryMode`,
// `numSumSent`, `summaryroot`, `mapfile` and `stemmer` go to the field finder.
// Owns nothing of what it is given. Mutes type 1 on `logger` and makes it the
// log; the caller opens it again.
//
// Throws _Exception_Fatal without any source and for a list that cannot be
// opened, and what the index creator throws.
void buildDocumentIndex(NameManager* rootName, FdSStream* restArgs, const char* exclude,
                        const char* filelist, const char* userlist, const char* spiderdir,
                        int mode_mask, int summaryMode, int numSumSent,
                        VandrelleLogIostream* logger, const char* summaryroot, const char* mapfile,
                        TkStemmer* stemmer, DcUserTypes* types);

// What the field finder is given. The pointers may be null and are not owned.
struct FieldOptions {
  int summaryMode;
  int sentences;
  const char* summaryroot;
  const char* mapfile;
  TkStemmer* stemmer;
};

// The same for feeds: every file that `filelist` (which may be null) and `restArgs`
// name, and all below the folders among them, is cut into documents as files of
// the one built-in data type `type`, but for the usual endings of files without
// text. Articles of a crawler's dump have the addresses that it gives them.
//
// Throws _Exception_Fatal for a list that cannot be opened, and what the index
// creator throws.
void buildFeedIndex(NameManager* rootName, int type, FdSStream* restArgs, const char* filelist,
                    const FieldOptions& options, VandrelleLogIostream* logger);

// A type whose articles tell their addresses.
bool isCrawlerType(int type);

// A new index creator that knows what to take and as which type; the caller owns
// it. `mode` has the bits of ModeMask; `exclude`, the path of an exclusion file,
// may be null. Throws _Exception_IO when that file cannot be opened.
DcMetaIndexCreator* INDEX_CREATOR(const char* rootname, int mode, const char* exclude,
                                  DcUserTypes* types);

// A new field parser, owned by the caller, by which titles are indexed with the
// text, once each.
DcFieldParser* FIELD_PARSER();

}  // namespace vandrelle
