#include "Document/DcFileDocManager.h"

#include <fstream>

#include "DocumentImpl/DiFileHandler.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcFileDocManager);

void StreamRecord::zero() {
  if (handler != nullptr && strm != nullptr) handler->Close(strm);
  *this = StreamRecord();
}

DcFileDocManager::DcFileDocManager(TkStemmer* stemmer, DcMetaDocManager* mmgr, DcChooser* chooser,
                                   std::int16_t indexBlock)
    : stemmer_(stemmer), indexBlock_(indexBlock), mmgr_(mmgr), chooser_(chooser) {}

DcFileDocManager::~DcFileDocManager() {
  for (StreamRecord& record : streamArr_) record.zero();
  delete index_;
}

int DcFileDocManager::countRecords() const {
  if (index_ == nullptr) return 0;
  index_->clear();
  index_->seekg(0, std::ios::end);
  return static_cast<int>(index_->tellg() / indexBlock_);
}

}  // namespace vandrelle
