#ifndef OLMKIT_FILTER_CORE_EXCEPTION_H
#define OLMKIT_FILTER_CORE_EXCEPTION_H

#include "filter/core/Throwable.h"

namespace qor {

// The code for an index outside its container.
inline constexpr unsigned int errorIndex = 137;

// The only exception type of the module. Negative codes wrap in `code`: -15 is 0xFFFFFFF1.
class Exception : public Throwable {
public:
    // As Throwable: all pointers may be null, and only the message is copied.
    explicit Exception(unsigned int errorCode, const char* message = nullptr,
                       Throwable* cause = nullptr, const char* file = nullptr,
                       unsigned int line = 0);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    unsigned int code;
};

// Throws an Exception with the code errorIndex. Out of line, so that the checks stay small.
[[noreturn]] void throwIndexError(const char* message);

} // namespace qor

#endif
