#ifndef OLMKIT_HOST_MARKUP_LINECOUNT_H
#define OLMKIT_HOST_MARKUP_LINECOUNT_H

#include <cstdint>

#include "host/markup/DocumentEncoding.h"
#include "host/stream/Handle.h"

namespace olmhost {

// A position in a document as text editors count, both from 1.
struct LineColumn {
    std::uint64_t line = 1;
    std::uint64_t column = 1;
};

// Returns the line and column of the byte at `place`. Reads `stream` from its start up to there,
// for a fault that was found by a reader that never saw the document's start.
LineColumn countLines(Handle& stream, std::uint64_t place, DocumentEncoding encoding);

} // namespace olmhost

#endif
