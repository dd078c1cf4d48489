#ifndef OLMKIT_TESTS_UNIT_STORAGE_THROWN_H
#define OLMKIT_TESTS_UNIT_STORAGE_THROWN_H

#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include "filter/core/Exception.h"

// -15 as a code: a stream took fewer bytes than requested.
inline constexpr unsigned int shortWriteCode = 0xFFFFFFF1;

// An item or a property that is not in any table.
inline constexpr unsigned int unknownCode = 15;

// Returns the code of the exception that `action` throws, if any. Such an exception must not have a
// message, unless it reports an index out of bounds.
template <class Action> std::optional<unsigned int> thrownCode(Action action) {
    try {
        action();
    } catch (const qor::Exception& failure) {
        if (failure.code != qor::errorIndex) {
            EXPECT_EQ(failure.message(), nullptr);
        }
        return failure.code;
    }
    return std::nullopt;
}

#endif
