#include "Driver/DocumentIndex.h"

#include <limits.h>

#include <cstring>
#include <fstream>
#include <iomanip>
#include <memory>
#include <string>
#include <vector>

#include "Document/DcDataType.h"
#include "Document/DcFieldBag.h"
#include "Document/DcFieldFinder.h"
#include "Document/DcFieldParser.h"
#include "Document/DcManager.h"
#include "Document/DcMetaIndexCreator.h"
#include "Driver/DriverOptions.h"
#include "Driver/ExclusionFile.h"
#include "Driver/OpenFile.h"
#include "Driver/SidePasses.h"
#include "Driver/VymFieldFinder.h"
#include "Exception.h"
#include "Fun/FdWrapper.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

// All types of the command's own are pages with its own helpers: see VymTypes.
constexpr int kPageType = DcDataType::kFirstUser;

void readExclusions(DcMetaIndexCreator* imgr, const char* path) {
  excludeObj entries(path);
  if (!entries.okFile()) THROW(IO, "File " << path << "cannot be opened for reading.");
  while (entries.nextLine()) {
    if (entries.contentType() != excludeObj::kExclude) {
      imgr->addDataType(entries.getName(), entries.contentType(), 1);
      continue;
    }
    if (entries.getName()[0] == '\0') {
      LOG(0, 0,
          "Exclusion file " << path << ", line " << entries.lineNumber()
                            << ": an empty pattern excludes every file.");
    } else if (entries.getName()[std::strlen(entries.getName()) - 1] == '\r') {
      LOG(0, 0,
          "Exclusion file " << path << ", line " << entries.lineNumber()
                            << ": the pattern ends in a carriage return; end lines with a line "
                               "feed alone.");
    }
    imgr->excludeRegExp(entries.getName());
  }
}

void addOrExclude(DcMetaIndexCreator* imgr, const char* pattern, bool wanted, int type) {
  if (wanted) {
    imgr->addDataType(pattern, type, 0);
  } else {
    imgr->excludeRegExp(pattern);
  }
}

// Adds all names of a list, separated by white space. No path of the system is
// longer than the width; what is goes in pieces.
void addFromList(DcMetaIndexCreator* imgr, std::ifstream& list) {
  std::string name;
  while (list >> std::setw(PATH_MAX - 1) >> name) {
    if (name.find('\0') != std::string::npos) {
      LOG(0, 1,
          name.c_str() << " is followed by a zero byte and more, which is ignored; separate names "
                          "by white space.");
    }
    imgr->Add(name.c_str());
  }
}

// The names in the list `path`, a `kind` of list; none when it is null.
void addFromList(DcMetaIndexCreator* imgr, const char* path, const char* kind) {
  if (path == nullptr) return;
  std::ifstream list;
  if (!openInputFile(path, list)) THROW(Fatal, "Coudn't open " << kind << " '" << path << "'.");
  addFromList(imgr, list);
}

// A stage of its own: nothing is told as progress. No field of a former run is to stand in
// the way, nor a file that this run may not write; and without its header a family of files
// is no index, so that a run which ends half-way leaves nothing that could be asked.
void beginDocumentIndex(NameManager* rootName, VandrelleLogIostream* logger) {
  removeFieldFiles(rootName);
  for (const char* suffix :
       {".info", ".trp", ".unstem", ".dir", "_mlt.idx", ".sum.map", ".sum.idx"}) {
    SysTools::removeFile(rootName->suffix(suffix));
  }
  LOG(2, 1, "Building document index...");
  LOG(1, 1, "Building document index...");
  logger->stream(1, nullptr);
  VandrelleLog::Logger(logger);
}

// An index creator and what it uses, destroyed from the last to the first.
struct Listing {
  // Takes the creator.
  explicit Listing(DcMetaIndexCreator* made) : creator(made) {
    for (const char* field : {"title", "summary", "url"}) fields.Add(field, 0);
    creator->specifyFields(&fields);
  }

  // What is added from now on has the address that its page tells (`byPage`), or that of
  // its file, mapped.
  void findFields(const FieldOptions& by, bool byPage) {
    if (by.mapfile != nullptr && !byPage) {
      mapper = std::make_unique<VymFileToURLMapper>(by.mapfile);
    }
    finders.emplace_back(
        byPage
            ? SPIDER_FIELD_FINDER(by.summaryMode, by.sentences, by.summaryroot, by.stemmer)
            : FIELD_FINDER(by.summaryMode, by.sentences, by.summaryroot, mapper.get(), by.stemmer));
    creator->setFieldFinder(finders.back().get());
  }

  std::unique_ptr<VymFileToURLMapper> mapper;
  DcFieldBag fields{0, 0};
  std::vector<std::unique_ptr<DcFieldFinder>> finders;
  std::unique_ptr<DcMetaIndexCreator> creator;
};

}  // namespace

bool isCrawlerType(int type) {
  return type == DcDataType::kCrawler || type == DcDataType::kCrawlerToo;
}

DcFieldParser* FIELD_PARSER() {
  DcFieldParser* parser = new DcFieldParser;
  parser->AddFieldToBeIndexed("title", 1);
  return parser;
}

// The first rule that applies to a file wins, so the order is the policy: what
// the exclusion file says beats everything, and the catch-all comes last.
DcMetaIndexCreator* INDEX_CREATOR(const char* rootname, int mode, const char* exclude,
                                  DcUserTypes* types) {
  DcMetaIndexCreator* imgr = DcManager::getMetaIndexCreator(rootname, 0, types);
  if (exclude != nullptr) readExclusions(imgr, exclude);
  imgr->excludeRegExp("~$");               // editor backups
  imgr->excludeRegExp("VD\\-.*\\.html$");  // the system's own generated pages
  imgr->excludeRegExp("\\/\\.[^\\/]+$");   // hidden files
  imgr->excludeBadEndings();
  // Any name with a dot and then "htm" somewhere behind it counts as HTML.
  for (const char* pattern : {"\\..*htm.*$", "\\..*HTM.*$"}) {
    addOrExclude(imgr, pattern, (mode & kIndexHtml) != 0, kPageType);
  }
  for (const char* pattern : {"\\.pdf$", "\\.PDF$"}) {
    addOrExclude(imgr, pattern, (mode & kIndexPdf) != 0, DcDataType::kPdf);
  }
  if ((mode & kIndexCustom) != 0 &&
      SysTools::fileExists(NameManager(rootname, 20).suffix(".cus"))) {
    imgr->addDataType("\\.cus$", DcDataType::kCustom, 1);
    imgr->addDataType("\\.CUS$", DcDataType::kCustom, 1);
  }
  if ((mode & kIndexText) != 0)
    imgr->addDataType(".*", DcDataType::kText, static_cast<char>(mode & kIndexText));
  imgr->DoneWithDataTypes();
  return imgr;
}

void buildDocumentIndex(NameManager* rootName, FdSStream* restArgs, const char* exclude,
                        const char* filelist, const char* userlist, const char* spiderdir,
                        int mode_mask, int summaryMode, int numSumSent,
                        VandrelleLogIostream* logger, const char* summaryroot, const char* mapfile,
                        TkStemmer* stemmer, DcUserTypes* types) {
  if (spiderdir == nullptr && userlist == nullptr && filelist == nullptr && !restArgs->more()) {
    THROW(Fatal,
          "You must designate files to be indexed using -flist, -ulist, or provide them on the "
          "command line.");
  }
  beginDocumentIndex(rootName, logger);

  const FieldOptions options{summaryMode, numSumSent, summaryroot, mapfile, stemmer};
  Listing listing(INDEX_CREATOR(rootName->suffix(nullptr), mode_mask, exclude, types));
  listing.findFields(options, false);
  if (filelist != nullptr) LOG(2, 0, "Reading file names from filelist");
  addFromList(listing.creator.get(), filelist, "filelist");
  if (userlist != nullptr) LOG(2, 0, "Reading user directories from user list");
  addFromList(listing.creator.get(), userlist, "user list");
  for (; restArgs->more(); restArgs->next()) listing.creator->Add(restArgs->key());
  if (spiderdir != nullptr) {
    listing.findFields(options, true);
    LOG(2, 0, "Getting files from spider directory...");
    listing.creator->Add(spiderdir);
  }
  listing.creator->DoneAddingDocs();
}

void buildFeedIndex(NameManager* rootName, int type, FdSStream* restArgs, const char* filelist,
                    const FieldOptions& options, VandrelleLogIostream* logger) {
  beginDocumentIndex(rootName, logger);
  if (isCrawlerType(type)) {
    // The numbers in the crawler's tables would go on from those of a former run.
    for (const char* suffix : {".url", ".lru", ".tit"}) {
      SysTools::removeFile(rootName->suffix(suffix));
    }
  }
  Listing listing(DcManager::SingleIndexCreator(rootName->suffix(nullptr), type, 0, nullptr));
  listing.findFields(options, isCrawlerType(type));
  addFromList(listing.creator.get(), filelist, "filelist");
  for (; restArgs->more(); restArgs->next()) listing.creator->Add(restArgs->key());
  listing.creator->DoneAddingDocs();
}

}  // namespace vandrelle
