#ifndef OLMKIT_TESTS_UNIT_STORAGE_THROWN_H
#define OLMKIT_TESTS_UNIT_STORAGE_THROWN_H

#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include "filter/core/Exception.h"

// -15 as a code: a stream took fewer bytes than it was given.
inline constexpr unsigned int shortWriteCode = 0xFFFFFFF1;

// An item or a property that no table holds.
inline constexpr unsigned int unknownCode = 15;

// The code of the exception that `action` throws, none when it throws nothing. These exceptions
// have no message, unless the container's bounds were broken.
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
