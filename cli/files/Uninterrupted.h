#ifndef OLMKIT_CLI_FILES_UNINTERRUPTED_H
#define OLMKIT_CLI_FILES_UNINTERRUPTED_H

#include <unistd.h>

#include <cerrno>

namespace olmkit {

// Calls `call`, a system call that returns a value below 0 on an error, again for as long as a
// signal interrupts it. Some file systems interrupt calls that no request to stop concerns.
template <typename Call> auto uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

// Closes a descriptor. Returns 0 or an errno value. An interrupted close() has closed it as well,
// and must not be called again: another thread may have the number by then.
inline int closeFile(int file) {
    return ::close(file) == 0 || errno == EINTR ? 0 : errno;
}

} // namespace olmkit

#endif
