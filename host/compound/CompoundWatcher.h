#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDWATCHER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDWATCHER_H

#include <string_view>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// Is notified of the bytes of a stream, after each piece is written.
class StreamWatcher {
public:
    virtual ~StreamWatcher() = default;
    virtual void wrote(ByteSpan bytes) = 0;
};

// Is notified of what is made in a compound file, in order. An exception counts as a failure of the
// file.
class CompoundWatcher {
public:
    virtual ~CompoundWatcher() = default;

    // A storage was made in the root. No other one in the file has its `id`.
    virtual void storageMade(EntryId id, std::u16string_view name) = 0;

    // A stream was made in the storage `parent`, which is not the root. Returns the watcher of its
    // bytes, which must live until the output ends, or null.
    virtual StreamWatcher* streamMade(EntryId parent, std::u16string_view name) = 0;
};

} // namespace olmhost

#endif
