#ifndef OLMKIT_HOST_STREAM_HANDLE_H
#define OLMKIT_HOST_STREAM_HANDLE_H

#include "filter/boundary/HostStream.h"
#include "host/stream/EntryFault.h"
#include "host/stream/Limits.h"
#include "host/stream/TagWatch.h"

namespace olmhost {

// The object behind a HostStream that this host gives out.
//
// The record is a base, so a Handle* becomes the HostStream* that the module holds, and of() leads
// back. The record's operations call the virtual ones below; an exception that leaves one of them
// becomes statusFailed, since nothing may be thrown through the module.
class Handle : public HostStream {
public:
    static constexpr std::int32_t statusDone = 0;
    static constexpr std::int32_t statusEnd = 1;     // no more bytes
    static constexpr std::int32_t statusFailed = -1; // refused, or failed

    Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    virtual ~Handle() = default;

    // The object behind a record that this host gave out.
    static Handle& of(HostStream* record) { return *static_cast<Handle*>(record); }

    // What stands in the places of a record that nothing is ever called at.
    static void refuseReserved() noexcept {}

    // At most `size` bytes into `buffer`; `count` is how many came, below `size` only shortly
    // before the end. statusEnd, without bytes, at the end. Refused unless overridden.
    virtual std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count);

    // `size` bytes; `count` is how many went. Refused unless overridden.
    virtual std::int32_t writeBytes(const void* data, std::uint32_t size, std::uint32_t& count);

    // To `offset` bytes from `origin` (0 start, 1 here, 2 end). Refused unless overridden.
    virtual std::int32_t seekTo(std::int64_t offset, std::int32_t origin);

    // The module's `close`: ends the handle, as a rule by deleting it or giving it to its owner.
    virtual void end() = 0;

    // Takes note of a fault that whoever reads the stream has found in it. Drops it unless
    // overridden. The entry's index is the stream's own affair.
    virtual void reportFault(FaultKind kind, const std::string& text);

    // Who is to be told of the tags in this stream when it is read as a document; null for nobody.
    virtual TagWatch* tagWatch();

    // The bounds that a reader of this stream keeps to.
    virtual const Limits& limits() const;
};

} // namespace olmhost

#endif
