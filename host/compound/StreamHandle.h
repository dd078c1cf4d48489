#ifndef OLMKIT_HOST_COMPOUND_STREAMHANDLE_H
#define OLMKIT_HOST_COMPOUND_STREAMHANDLE_H

#include <memory>
#include <vector>

#include "host/compound/CompoundHandle.h"
#include "host/compound/CompoundWatcher.h"
#include "host/compound/CompoundWriter.h"
#include "host/compound/SectorChain.h"

namespace olmhost {

// A stream that is being written, sequentially. Its bytes are held while they are fewer than
// miniStreamLimit; then they go to sectors, and less than a sector is held.
class StreamHandle : public CompoundHandle {
public:
    // `file` is borrowed, as `owner` is.
    StreamHandle(CompoundOutput& owner, CompoundWriter& file, EntryReference reference)
        : CompoundHandle(owner, reference), writer(file) {}

    // From now on `newWatcher`, unless null, is notified of the bytes written. It is borrowed until
    // the stream is closed.
    void watchBy(StreamWatcher* newWatcher) { watcher = newWatcher; }

    // Writes all of the bytes or none. Refused when the sink has failed, the file is finished, the
    // stream was replaced, or it would be longer than largestStream.
    std::int32_t writeBytes(const void* data, std::uint32_t size, std::uint32_t& count) override;

    void settle() noexcept override;

private:
    void append(ByteSpan bytes);
    void store();

    CompoundWriter& writer;
    StreamWatcher* watcher = nullptr;
    std::vector<std::byte> held;        // the whole of a short stream
    std::unique_ptr<SectorChain> chain; // of a long one
    std::uint64_t streamSize = 0;       // bytes
    bool isStored = false;
};

} // namespace olmhost

#endif
