#ifndef OLMKIT_HOST_SESSION_COLUMN_H
#define OLMKIT_HOST_SESSION_COLUMN_H

#include <array>
#include <cstdint>

namespace olmhost {

// One column as the module defined it: the arguments of its three calls, in their order.
struct Column {
    std::array<std::uint32_t, 3> type = {};
    std::array<std::uint32_t, 3> format = {};
    std::array<std::uint32_t, 4> done = {};

    bool operator==(const Column&) const = default;
};

} // namespace olmhost

#endif
