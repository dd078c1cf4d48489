#include "filter/core/Exception.h"

namespace qor {

Exception::Exception(unsigned int errorCode, const char* message, Throwable* cause,
                     const char* file, unsigned int line)
    : Throwable(message, cause, file, line), code(errorCode) {}

Exception::~Exception() = default;

void throwIndexError(const char* message) {
    throw Exception(errorIndex, message);
}

} // namespace qor
