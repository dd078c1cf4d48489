#ifndef OLMKIT_HOST_ARCHIVE_ENTRYSTREAM_H
#define OLMKIT_HOST_ARCHIVE_ENTRYSTREAM_H

#include <cstdint>
#include <memory>

#include "host/archive/EntryData.h"
#include "host/stream/Handle.h"

namespace olmhost {

class Archive;

// An open entry of an archive, which can be read and sought in both directions. The Archive owns
// it; the module's `close` deletes it.
class EntryStream final : public Handle {
public:
    // `member`, unless null, keeps account of what is read.
    EntryStream(Archive& archive, std::uint64_t entryIndex, std::shared_ptr<EntryData> data,
                std::shared_ptr<MemberRead> member);

    std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count) override;

    // Refuses a position before the start. One after the end is allowed; reading there returns
    // statusEnd. The end is that of the bytes that can be read.
    std::int32_t seekTo(std::int64_t offset, std::int32_t origin) override;

    // Deletes the stream.
    void end() override;

    // Adds a fault of this entry.
    void reportFault(FaultKind kind, const std::string& text) override;

    TagWatch* tagWatch() override;
    const Limits& limits() const override;

private:
    void updateAccount();

    Archive& archive;
    std::uint64_t entryIndex;
    std::shared_ptr<EntryData> data;
    std::shared_ptr<MemberRead> member;
    std::uint64_t position = 0; // never above the largest signed number
};

} // namespace olmhost

#endif
