#include "host/stream/Handle.h"

namespace olmhost {

namespace {

// Returns the status of `operation`; statusFailed when it throws.
template <typename Operation> std::int32_t guarded(Operation operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return Handle::statusFailed;
    }
}

std::int32_t closeRecord(HostStream* record) noexcept {
    return guarded([record] {
        Handle::of(record).end();
        return Handle::statusDone;
    });
}

std::int32_t readRecord(HostStream* record, void* buffer, std::uint32_t size,
                        std::uint32_t* bytesRead) noexcept {
    *bytesRead = 0;
    return guarded([=] { return Handle::of(record).readBytes(buffer, size, *bytesRead); });
}

std::int32_t writeRecord(HostStream* record, const void* data, std::uint32_t size,
                         std::uint32_t* bytesWritten) noexcept {
    *bytesWritten = 0;
    return guarded([=] { return Handle::of(record).writeBytes(data, size, *bytesWritten); });
}

std::int32_t seekRecord(HostStream* record, std::int64_t offset, std::int32_t origin) noexcept {
    return guarded([=] { return Handle::of(record).seekTo(offset, origin); });
}

std::int32_t refuseOpen(HostStream** /*handle*/, std::uint32_t /*code*/, void* /*request*/,
                        std::uint32_t /*mode*/) noexcept {
    return Handle::statusFailed;
}

} // namespace

Handle::Handle()
    : HostStream{closeRecord,    readRecord,     writeRecord, seekRecord,
                 refuseReserved, refuseReserved, refuseOpen} {}

std::int32_t Handle::readBytes(void* /*buffer*/, std::uint32_t /*size*/, std::uint32_t& /*count*/) {
    return statusFailed;
}

std::int32_t Handle::writeBytes(const void* /*data*/, std::uint32_t /*size*/,
                                std::uint32_t& /*count*/) {
    return statusFailed;
}

std::int32_t Handle::seekTo(std::int64_t /*offset*/, std::int32_t /*origin*/) {
    return statusFailed;
}

void Handle::reportFault(FaultKind /*kind*/, const std::string& /*text*/) {}

TagWatch* Handle::tagWatch() {
    return nullptr;
}

const Limits& Handle::limits() const {
    static const Limits defaults;
    return defaults;
}

} // namespace olmhost
