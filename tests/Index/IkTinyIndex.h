// Writes small indexes for tests, file by file.
#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Index/IkDataFileCreator.h"
#include "Index/IkIdfCreator.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkProxCreator.h"
#include "Index/IkSimilarity.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Storage/StPosMapCreator.h"
#include "Tool/ByteOrder.h"
#include "Word.h"

namespace vandrelle {

// Chunk and the positions of a word in it; words in the order of the table.
using IkTinyRow = std::vector<std::pair<int, std::vector<int>>>;
using IkTinyWords = std::map<std::string, IkTinyRow>;

// The scale of a row is its number of chunks, or the idf for that if there is an
// `idf`. Answers the root.
inline std::string writeTinyIndex(const char* name, int numChunks, const IkTinyWords& words,
                                  const IkSimilarity* idf = nullptr) {
  const std::string root = testing::TempDir() + name;
  for (const char* suffix : {".xk", ".xidx.xw", ".latest.info"}) {
    std::remove((root + suffix).c_str());
  }
  IkIndexInfo info;
  info.numTerms = static_cast<int>(words.size());
  info.totalNumChunks = numChunks;
  info.minDocumentLength = 400.0f;
  info.write((root + ".info").c_str());

  IkDataFileCreator rows;
  rows.create((root + ".dat").c_str(), 0);
  IkIdfCreator idfs(&info, (root + ".idf").c_str());
  IkProxCreator positions((root + ".prx").c_str());
  StPosMapCreator map((root + ".prx.map").c_str(), 128);
  const std::unique_ptr<KdFileCreator> keys(KfKeyFileManager::KdCreate(root.c_str(), 512, 14, 5));
  for (const auto& [text, row] : words) {
    unsigned char value[5];
    storeU32(value, rows.offset().Lo());
    value[4] = static_cast<unsigned char>(rows.offset().Hi());
    WmLocalWord word(text.c_str());
    keys->Add_Entry(word.word(), value, 5);
    std::vector<IkDocumentInfo> pairs;
    for (const auto& [chunk, places] : row) {
      pairs.push_back({chunk, static_cast<int>(places.size())});
      positions.reset();
      for (int place : places) positions.add(static_cast<uint32>(place));
    }
    map.add(positions.tell());
    idfs.add(1.0f);
    const auto df = static_cast<int>(pairs.size());
    rows.writeRow(pairs.data(), df, idf != nullptr ? idf->IDF(df) : static_cast<float>(df));
  }
  map.add(positions.tell());
  return root;
}

}  // namespace vandrelle
