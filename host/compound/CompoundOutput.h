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

// The output that a request names; it stands for one message.
//
// Either a compound file comes out of it, by way of createRoot(), or raw bytes do, by way of
// writeBytes(): never both. The storages and streams of the file belong to it until they are
// closed. Whoever made the output ends it by destroying it; the module's `close` leaves it alone.
class CompoundOutput : public Handle {
public:
    // Both are borrowed and must outlive the output. `watcher`, unless null, is told of what is
    // made.
    explicit CompoundOutput(ByteSink& target, CompoundWatcher* watcher = nullptr);

    // Gives back every storage and stream that hangs from it. A root that is open then leaves the
    // file unfinished, with a blank header.
    ~CompoundOutput() override;

    // A root storage was made and closed, and every byte of the file went out.
    bool isWhole() const;

    // The sink refused bytes, or memory ran out on the way to it: the file can't become whole.
    bool failed() const;

    // A stream met the largest size that the format has, so what was written behind that is not
    // in it. The file itself can be whole all the same.
    bool lostBytes() const { return hasLostBytes; }

    // Storages and streams that were made and not closed yet.
    std::size_t openHandles() const { return handles.size(); }

    // Raw bytes, straight to the sink. Refused once there is a root storage.
    std::int32_t writeBytes(const void* data, std::uint32_t size, std::uint32_t& count) override;

    // Nothing: the output belongs to whoever made it.
    void end() override {}

    // The file's root storage; null when there is one already or raw bytes went out. The handle
    // is closed by its caller, as those of the two functions below.
    CompoundHandle* createRoot();

    // A storage or stream called `name` in `parent`, in the place of one that has that name. Null
    // when the name can't stand in a compound file, the parent was itself replaced, or the file
    // is finished. A failed sink is no reason: the writes will tell.
    CompoundHandle* createStorage(EntryReference parent, std::u16string_view name);
    CompoundHandle* createStream(EntryReference parent, std::u16string_view name);

    // For the handles alone: the root was closed, so that the file is finished with what its
    // streams hold.
    void finish() noexcept;

    // For the handles alone: bytes were refused because their stream can't be longer.
    void noteLostBytes() { hasLostBytes = true; }

    // For the handles alone: deletes the handle.
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
    std::list<std::unique_ptr<CompoundHandle>> handles; // the open ones, in order of their making
    bool hasRawBytes = false;
    bool rawFailed = false;
    bool hasLostBytes = false;
};

} // namespace olmhost

#endif
