#ifndef OLMKIT_HOST_ARCHIVE_ENTRYSTREAM_H
#define OLMKIT_HOST_ARCHIVE_ENTRYSTREAM_H

#include <cstdint>
#include <memory>

#include "host/archive/EntryData.h"
#include "host/stream/Handle.h"

namespace olmhost {

class Archive;

// An open entry of an archive: reads and seeks, back and forth. The Archive owns it; the module's
// `close` gives it back.
class EntryStream final : public Handle {
public:
    // `member` is where the reading is entered, or null.
    EntryStream(Archive& archive, std::uint64_t entryIndex, std::shared_ptr<EntryData> data,
                std::shared_ptr<MemberRead> member);

    std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count) override;

    // A place ahead of the start is refused; one behind the end is not, and reading there gives
    // the end. `origin` 2 counts from the end of what can be had.
    std::int32_t seekTo(std::int64_t offset, std::int32_t origin) override;

    // Destroys the stream.
    void end() override;

    // Becomes a fault of this entry.
    void reportFault(FaultKind kind, const std::string& text) override;

    TagWatch* tagWatch() override;
    const Limits& limits() const override;

private:
    void enterReading();

    Archive& archive;
    std::uint64_t entryIndex;
    std::shared_ptr<EntryData> data;
    std::shared_ptr<MemberRead> member;
    std::uint64_t position = 0; // never above the largest signed number
};

} // namespace olmhost

#endif
