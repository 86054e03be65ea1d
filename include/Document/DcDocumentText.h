// The block reading that all file documents share.
#pragma once

#include <iosfwd>

namespace vandrelle {

// Copies up to `count` bytes from `offset` of a document of `size` bytes that
// begins at byte `start` of the stream, into `place`, or into a new array of
// `count` bytes when `place` is null. Null without a stream. A short read leaves
// the rest of the buffer as it was and the stream usable.
char* readDocumentText(std::istream* stream, int start, int size, long offset, int count,
                       char* place);

}  // namespace vandrelle
