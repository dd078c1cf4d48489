#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDOUTPUT_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDOUTPUT_H

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string_view>

#include "host/compound/CompoundHandle.h"
#include "host/compound/CompoundWatcher.h"
#include "host/compound/CompoundWriter.h"
#include "host/stream/ByteSink.h"
#include "host/stream/Handle.h"

namespace olmhost {

// The output of a request: one message.
//
// It writes either a compound file, after createRoot(), or raw bytes, by writeBytes(): never both.
// It owns the storages and streams of the file until they are closed. Its creator ends it by
// destroying it; the module's `close` does nothing.
class CompoundOutput : public Handle {
public:
    // Both are borrowed and must outlive the output. `watcher`, unless null, is notified of what is
    // made.
    explicit CompoundOutput(ByteSink& target, CompoundWatcher* watcher = nullptr);

    // Deletes every storage and stream that is still open. If the root is, the file stays
    // unfinished, with a blank header.
    ~CompoundOutput() override;

    // Returns true when a root storage was made and closed and the sink has every byte of the file.
    bool isWhole() const;

    // Returns true when the sink has failed or memory has run out: the file can't be finished.
    bool failed() const;

    // Returns true when a stream has reached the largest size of the format, so that it lacks what
    // was written after that. The file can be whole all the same.
    bool lostBytes() const { return hasLostBytes; }

    // Returns the number of open storages and streams.
    std::size_t openHandles() const { return handles.size(); }

    // Writes raw bytes directly to the sink. Refused once there is a root storage.
    std::int32_t writeBytes(const void* data, std::uint32_t size, std::uint32_t& count) override;

    // Does nothing: the output belongs to its creator.
    void end() override {}

    // Creates the file's root storage. Returns null when there is one or raw bytes were written.
    // The caller closes the handle, as those of the next two functions.
    CompoundHandle* createRoot();

    // Creates a storage or stream called `name` in `parent`, and replaces one that has that name.
    // Returns null when the name is not valid in a compound file, the parent was itself replaced,
    // or the file is finished. A failed sink is reported by the writes instead.
    CompoundHandle* createStorage(EntryReference parent, std::u16string_view name);
    CompoundHandle* createStream(EntryReference parent, std::u16string_view name);

    // Only for the handles: the root was closed. Finishes the file with what its streams hold.
    void finish() noexcept;

    // Only for the handles: bytes were refused because their stream can't be longer.
    void noteLostBytes() { hasLostBytes = true; }

    // Only for the handles: deletes the handle.
    void release(CompoundHandle& handle) noexcept;

private:
    template <typename HandleType> HandleType* keep(EntryReference entry);
    template <typename HandleType>
    void announce(HandleType& handle, EntryReference parent, EntryReference entry,
                  std::u16string_view name);
    template <typename HandleType>
    CompoundHandle* create(EntryReference parent, EntryType type, std::u16string_view name);

    ByteSink& sink;
    CompoundWatcher* watcher;
    std::optional<CompoundWriter> writer;               // from createRoot() on
    std::list<std::unique_ptr<CompoundHandle>> handles; // the open ones, in order of creation
    bool hasRawBytes = false;
    bool rawFailed = false;
    bool hasLostBytes = false;
};

} // namespace olmhost

#endif
