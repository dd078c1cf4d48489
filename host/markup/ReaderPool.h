#ifndef OLMKIT_HOST_MARKUP_READERPOOL_H
#define OLMKIT_HOST_MARKUP_READERPOOL_H

#include <memory>
#include <vector>

#include "host/markup/MarkupReader.h"

namespace olmhost {

// Closed readers of one thread, kept for the next documents: an archive has one for each mail, and
// creating a parser costs as much as parsing a short one.
class ReaderPool {
public:
    // Returns the calling thread's pool.
    static ReaderPool& ofThread();

    // Returns a reader that is not open.
    std::unique_ptr<MarkupReader> take();
    // Keeps a closed reader, or deletes it when enough are kept.
    void put(std::unique_ptr<MarkupReader> reader);

private:
    std::vector<std::unique_ptr<MarkupReader>> kept;
};

} // namespace olmhost

#endif
