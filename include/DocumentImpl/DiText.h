// What the header parsers share: lines of a file in pieces of bounded length,
// and searches in a document that never hold more than a block of it.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace vandrelle {

class DcAsciiDocument;
class DcHeaderDocument;

// Reads lines through a buffer: a line longer than the buffer less its NUL comes
// in pieces, each of which counts as a line.
class DiLineReader {
 public:
  static constexpr int kLine = 256;
  static constexpr int kMaxLine = 1024;

  // `size` of the buffer in bytes, at most kMaxLine. Starts where the stream
  // stands and does not own it.
  explicit DiLineReader(std::istream& stream, int size = kLine);

  // Takes the next piece, without its newline; false at the end of the stream.
  bool next();

  // The piece, ended with a NUL.
  const char* text() const { return buffer_; }
  std::string_view view() const { return {buffer_, static_cast<std::size_t>(length_)}; }

  // Where the piece begins and where the next will begin, in bytes of the stream.
  long begin() const { return begin_; }
  long end() const { return end_; }

  bool startsWith(std::string_view prefix) const { return view().starts_with(prefix); }

 private:
  std::istream& stream_;
  int size_;
  int length_ = 0;
  long begin_;
  long end_;
  char buffer_[kMaxLine];
};

// Forgets what ended the reading, an end of file for instance, and moves.
void seekTo(std::istream& stream, long position);

// ASCII letters alone are folded. The pattern of a search begins with a byte that
// is no letter.
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);
std::size_t findIgnoringCase(std::string_view text, std::string_view pattern, std::size_t from = 0);

// The header bytes of a document; empty without a source or a header.
std::string headerText(DcHeaderDocument* doc);

// Offset just behind the first `pattern` (with `ignoreCase` one that begins with a
// byte that is no letter) within the first `limit` bytes of the
// document, -1 if there is none. Reads in blocks.
long findInDocument(DcAsciiDocument* doc, std::string_view pattern, bool ignoreCase, long limit);

// Adds what stands from `offset` on, up to the next newline or the end of the document,
// to `line`. Reads in blocks of `blockSize` bytes, at most 4096. False when the source
// is gone midway.
bool addLine(DcAsciiDocument* doc, long offset, int blockSize, std::string* line);

// Follows the head of a page: looks in line after line for the first <title>, and
// behind it for the first <body>, </head> and </title>, ignoring case.
class DiPageHead {
 public:
  // Where in the line the text behind <title> goes on: 0 in a line behind the title's,
  // npos in one before.
  std::size_t look(const DiLineReader& line);

  bool titleSeen() const { return title_ >= 0; }
  bool titleEnded() const { return ends_[2] >= 0; }
  bool bodySeen() const { return ends_[0] >= 0; }
  // Behind <body>, else </head>, else </title>, in bytes of the stream, else `otherwise`.
  long end(long otherwise) const;

 private:
  long title_ = -1;  // behind the tag
  long ends_[3] = {-1, -1, -1};
};

// protocol TAB host TAB port TAB path, the first line of a page that a crawler has
// fetched, as an address; empty when a tab is missing. The path may hold more tabs.
std::string addressOf(std::string_view line);

}  // namespace vandrelle
