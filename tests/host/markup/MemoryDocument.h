#ifndef OLMKIT_TESTS_HOST_MARKUP_MEMORYDOCUMENT_H
#define OLMKIT_TESTS_HOST_MARKUP_MEMORYDOCUMENT_H

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "host/stream/Handle.h"

namespace olmtest {

// A document in memory, which returns at most `readSize` bytes per read. A reader may combine two
// reads: a size of 2 is one read of 2 and then single bytes, so that the pairs differ from those of
// a size of 1.

class MemoryDocument : public olmhost::Handle {
public:
    explicit MemoryDocument(std::string content, std::uint32_t bytesPerRead = 65536)
        : bytes(std::move(content)), readSize(bytesPerRead) {}

    std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count) override {
        ++reads;
        if (failsReading) {
            return statusFailed;
        }
        const std::uint64_t left = place < bytes.size() ? bytes.size() - place : 0;
        count = static_cast<std::uint32_t>(std::min<std::uint64_t>(
            {std::uint64_t{size}, readSize == 2 && place > 0 ? 1 : readSize, left}));
        if (count == 0) {
            return statusEnd;
        }
        std::memcpy(buffer, bytes.data() + place, count);
        place += count;
        bytesRead += count;
        return statusDone;
    }

    std::int32_t seekTo(std::int64_t offset, std::int32_t origin) override {
        ++seeks;
        if (failsSeeking || origin != 0) {
            return statusFailed;
        }
        place = static_cast<std::uint64_t>(offset);
        return statusDone;
    }

    void end() override {}
    void reportFault(olmhost::FaultKind kind, const std::string& text) override {
        faults.push_back({kind, 0, text});
    }
    const olmhost::Limits& limits() const override { return bounds; }

    std::string bytes;
    std::uint32_t readSize;
    olmhost::Limits bounds;
    std::vector<olmhost::EntryFault> faults;
    std::uint64_t place = 0;
    std::uint64_t bytesRead = 0;
    int reads = 0;
    int seeks = 0;
    bool failsReading = false;
    bool failsSeeking = false;
};

} // namespace olmtest

#endif
