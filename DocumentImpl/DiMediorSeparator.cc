#include "DocumentImpl/DiMediorSeparator.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include "Document/DcFileStream.h"
#include "DocumentImpl/DiText.h"
#include "Token/TkLexer.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

namespace {

// A piece that begins in mid-file is read as inside of the two groups that hold
// the body of a text.
constexpr int kGroupsAroundText = 2;
// The paragraph mark "\par": its end is told when the "p" has been read.
constexpr long kMarkRead = 2;
constexpr long kMarkSize = 4;

std::vector<std::int32_t> readTable(const std::string& path) {
  DcSourceStream file(path.c_str());
  std::vector<std::int32_t> table;
  for (char bytes[4]; file.good() && file.read(bytes, sizeof bytes);) {
    table.push_back(loadS32(bytes));
  }
  return table;
}

}  // namespace

DiMediorSeparator::DiMediorSeparator(TkLexer* lexer, const char* root, int sepSize)
    : lexer_(lexer),
      sepTable_(readTable(std::string(root) + ".sep")),
      sepSize_(std::max(sepSize, 1)) {}

void DiMediorSeparator::beginFile(const std::ifstream* file) {
  lastFile_ = file;
  ++filenum_;
  if (filenum_ >= std::ssize(sepTable_)) {
    currentSepSize_ = std::numeric_limits<int>::max();
    return;
  }
  const int letters = std::max(sepTable_[static_cast<std::size_t>(filenum_)], 0);
  const int pieces = std::max(letters / sepSize_ + (letters % sepSize_ > sepSize_ / 2 ? 1 : 0), 1);
  currentSepSize_ = letters / pieces + pieces;
}

long DiMediorSeparator::gotoNextArticle(std::ifstream* thisFile, long* docEnd) {
  const long origpos = thisFile->tellg();
  lexer_->reset();
  // A file's stream may lie where the one before it lay; a beginning is then what
  // tells them apart.
  if (thisFile != lastFile_ || origpos == 0) beginFile(thisFile);
  if (origpos > 0) {
    for (int i = 0; i < kGroupsAroundText; ++i) lexer_->nextCharacter('{');
  }

  // Not the file stream's own buffer: the source streams have another in its place.
  std::streambuf* const bytes = static_cast<std::ios*>(thisFile)->rdbuf();
  long position = origpos;
  bool ended = false;
  const auto feed = [&] {
    const int c = bytes->sbumpc();
    ended = c == std::char_traits<char>::eof();
    if (ended) return;
    lexer_->nextCharacter(static_cast<char>(c));
    ++position;
  };
  for (long letters = 0; !ended && letters < currentSepSize_;) {
    feed();
    if (ended) break;
    if (const WmWord* word = lexer_->word()) letters += word->num_letters();
  }
  while (!ended && (lexer_->flags() & kParagraphEnd) == 0) feed();

  seekTo(*thisFile, origpos);
  *docEnd = ended ? position : position - kMarkRead;
  return ended ? position : *docEnd + kMarkSize;
}

}  // namespace vandrelle
