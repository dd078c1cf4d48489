#ifndef OLMKIT_HOST_MARKUP_LINECOUNT_H
#define OLMKIT_HOST_MARKUP_LINECOUNT_H

#include <cstdint>

#include "host/markup/DocumentEncoding.h"
#include "host/stream/Handle.h"

namespace olmhost {

// A place in a document as people name it, both from 1.
struct LineColumn {
    std::uint64_t line = 1;
    std::uint64_t column = 1;
};

// Reads `stream` from its start to the byte at `place` and counts lines and characters. For the
// faults that a reader meets which never saw the document's begin.
LineColumn countLines(Handle& stream, std::uint64_t place, DocumentEncoding encoding);

} // namespace olmhost

#endif
