// What the tests of document intake share: a scratch directory, the log as text,
// the text of a throw.
#pragma once

#include <algorithm>

#include "Document/DocumentFixture.h"
#include "TestLog.h"
#include "ThrownBy.h"

namespace vandrelle {

class IntakeTest : public DocumentFixture {
 protected:
  bool logged(const std::string& line) const {
    return std::count(log_.lines().begin(), log_.lines().end(), line) != 0;
  }

  static std::string read(const std::string& file) { return fileBytes(file); }

  // The file as big-endian integers.
  static std::vector<int32_t> integers(const std::string& file) {
    const std::string bytes = fileBytes(file);
    std::vector<int32_t> values;
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
      values.push_back(loadS32(bytes.data() + at));
    }
    return values;
  }

  TestLog log_;
};

}  // namespace vandrelle
