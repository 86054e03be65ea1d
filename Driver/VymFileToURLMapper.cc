#include "Driver/VymFileToURLMapper.h"

#include <cstring>
#include <fstream>
#include <iomanip>
#include <string>

#include "Driver/OpenFile.h"
#include "Exception.h"
#include "Fun/Fd.h"
#include "Tool/HeapText.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr int kTokenRoom = 1024;

bool isMatch(const char* filename, const char* filePrefix) {
  return std::strncmp(filename, filePrefix, std::strlen(filePrefix)) == 0;
}

char* substitutePrefix(const char* filename, const char* filePrefix, const char* urlPrefix) {
  return copyText(std::string(urlPrefix) + (filename + std::strlen(filePrefix)));
}

}  // namespace

VymFileToURLMapper::VymFileToURLMapper() : maps_(Fd::Queue()) {}

VymFileToURLMapper::VymFileToURLMapper(const char* filename) : VymFileToURLMapper() {
  readMappingsFromFile(filename);
}

VymFileToURLMapper::~VymFileToURLMapper() = default;

void VymFileToURLMapper::readMappingsFromFile(const char* filename) {
  std::ifstream file;
  if (!openInputFile(filename, file)) {
    THROW(Fatal, "Mapfile " << filename << "could not be opened.");
  }
  char urlPrefix[kTokenRoom];
  char filePrefix[kTokenRoom];
  while (file >> std::setw(kTokenRoom) >> urlPrefix) {
    if (!(file >> std::setw(kTokenRoom) >> filePrefix)) {
      LOG(0, 0, "Mapfile " << filename << ": '" << urlPrefix << "' has no file prefix behind it.");
      break;
    }
    addMapping(urlPrefix, filePrefix);
  }
  doneAddingMappings();
}

void VymFileToURLMapper::addMapping(const char* urlPrefix, const char* filePrefix) {
  maps_->insert(urlPrefix, static_cast<int>(std::strlen(urlPrefix)) + 1, filePrefix,
                static_cast<int>(std::strlen(filePrefix)) + 1);
}

void VymFileToURLMapper::doneAddingMappings() { iter_.reset(maps_->iterator()); }

char* VymFileToURLMapper::mapFilename(const char* filename) {
  if (iter_ == nullptr) THROW(Fatal, "Must call doneAddingMappings() before mapping.");
  for (iter_->reset(); iter_->more(); iter_->next()) {
    const char* filePrefix = static_cast<const char*>(iter_->data());
    if (isMatch(filename, filePrefix)) {
      return substitutePrefix(filename, filePrefix, static_cast<const char*>(iter_->key()));
    }
  }
  return copyText(filename);
}

}  // namespace vandrelle
