#ifndef OLMKIT_HOST_STREAM_HANDLE_H
#define OLMKIT_HOST_STREAM_HANDLE_H

#include "filter/boundary/HostStream.h"
#include "host/stream/EntryFault.h"
#include "host/stream/Limits.h"
#include "host/stream/TagWatch.h"

namespace olmhost {

// An object of this host that the module holds as a HostStream.
//
// The record is a base, so a Handle* converts to the HostStream* that the module holds, and of()
// converts back. The record's operations call the virtual ones below; an exception that leaves one
// of them becomes statusFailed, since nothing may be thrown through the module.
class Handle : public HostStream {
public:
    static constexpr std::int32_t statusDone = 0;
    static constexpr std::int32_t statusEnd = 1;     // no more bytes
    static constexpr std::int32_t statusFailed = -1; // refused, or failed

    // What `origin` of seekTo() means.
    static constexpr std::int32_t seekFromStart = 0;
    static constexpr std::int32_t seekFromHere = 1;
    static constexpr std::int32_t seekFromEnd = 2;

    Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    virtual ~Handle() = default;

    // Returns the object of a record that this host made.
    static Handle& of(HostStream* record) { return *static_cast<Handle*>(record); }

    // Fills the operations of a record that are never called.
    static void refuseReserved() noexcept {}

    // Reads at most `size` bytes into `buffer` and stores their number in `count`, which is below
    // `size` only shortly before the end. Returns statusEnd, without bytes, at the end. Refused
    // unless overridden.
    virtual std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count);

    // Writes `size` bytes and stores in `count` how many were written. Refused unless overridden.
    virtual std::int32_t writeBytes(const void* data, std::uint32_t size, std::uint32_t& count);

    // Moves to `offset` bytes from `origin`. Refused unless overridden.
    virtual std::int32_t seekTo(std::int64_t offset, std::int32_t origin);

    // The module's `close`: ends the handle, usually by deleting it or returning it to its owner.
    virtual void end() = 0;

    // Records a fault that a reader of the stream has found in it. Ignored unless overridden. The
    // stream adds the index of its entry.
    virtual void reportFault(FaultKind kind, const std::string& text);

    // Returns the object to notify of the tags when this stream is read as a document; may be null.
    virtual TagWatch* tagWatch();

    // Returns the limits for a reader of this stream.
    virtual const Limits& limits() const;
};

} // namespace olmhost

#endif
