#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDWATCHER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDWATCHER_H

#include <string_view>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// Is told of what goes into a stream, piece by piece, once each piece was taken.
class StreamWatcher {
public:
    virtual ~StreamWatcher() = default;
    virtual void wrote(ByteSpan bytes) = 0;
};

// Is told of what is made in a compound file, in order. What it throws counts as a failure of the
// file.
class CompoundWatcher {
public:
    virtual ~CompoundWatcher() = default;

    // A storage was made in the root. Its `id` is that of no other one that stands in the file.
    virtual void storageMade(EntryId id, std::u16string_view name) = 0;

    // A stream was made in the storage `parent`, which is not the root. Gives who is told of its
    // bytes (the watcher's own, at least until the output ends), or null.
    virtual StreamWatcher* streamMade(EntryId parent, std::u16string_view name) = 0;
};

} // namespace olmhost

#endif
