#include "Document/DcFileIndexCreator.h"

#include "Document/DcException.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

DcFileIndexCreator::DcFileIndexCreator(const char* root, DcChooser* helpt, DcMetaIndexCreator* mcr)
    : indexName_(std::string(root) + ".idx"), helperTable_(helpt), mcr_(mcr) {}

void DcFileIndexCreator::bindIndex() {
  notEmpty_ = true;
  index_ =
      std::make_unique<std::fstream>(indexName_, std::ios::in | std::ios::out | std::ios::binary);
  if (!*index_) THROW(FileInd, "couldn't bind to index file: " << indexName_);
  setMembers();
}

void DcFileIndexCreator::createIndex() {
  if (notEmpty_) return;
  index_ = std::make_unique<std::fstream>(indexName_,
                                          std::ios::out | std::ios::trunc | std::ios::binary);
  if (!*index_) THROW(FileInd, "couldn't create file: " << indexName_);
  notEmpty_ = true;
}

void DcFileIndexCreator::writeInt32(int32_t value) {
  char bytes[4];
  storeS32(bytes, value);
  index_->write(bytes, sizeof bytes);
}

void DcFileIndexCreator::DoneAddingDocs() {
  if (Done_) return;
  Done_ = true;
  if (index_ == nullptr) return;
  index_->close();
  if (!*index_) {
    THROW(FileInd, "The document list could not be written to "
                       << indexName_ << "; check the free space and the rights of its folder.");
  }
}

}  // namespace vandrelle
