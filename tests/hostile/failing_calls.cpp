// A preload library that lets one system call of a program fail with EIO.
//
//   FAILING_CALL=read:5 FAILED_CALL=/tmp/made LD_PRELOAD=libfailing_calls.so program
//
// The fifth call that reads fails. The file that FAILED_CALL names gets the path of the file that
// the call was for; it isn't made when the program has fewer such calls. Calls for the standard
// error are left alone, as a program whose messages are lost can't say so.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

std::atomic<long> callCount = 0;

void record(const char* path) {
    const char* name = std::getenv("FAILED_CALL");
    const long file = syscall(SYS_openat, AT_FDCWD, name == nullptr ? "" : name,
                              O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file >= 0) {
        syscall(SYS_write, file, path, std::strlen(path));
        syscall(SYS_close, file);
    }
}

// Whether this call, one of `kind`, is the one that fails.
bool isChosen(const char* kind) {
    const char* chosen = std::getenv("FAILING_CALL");
    const std::size_t length = std::strlen(kind);
    if (chosen == nullptr || std::strncmp(chosen, kind, length) != 0 || chosen[length] != ':') {
        return false;
    }
    return ++callCount == std::atol(chosen + length + 1);
}

bool failsAt(const char* kind, const char* path) {
    if (!isChosen(kind)) {
        return false;
    }
    record(path);
    errno = EIO;
    return true;
}

bool failsFor(const char* kind, int descriptor) {
    if (descriptor == STDERR_FILENO || !isChosen(kind)) {
        return false;
    }
    char link[64];
    char path[PATH_MAX] = {};
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1);
    record(path);
    errno = EIO;
    return true;
}

template <typename Function> Function* original(const char* name, Function* /*replacement*/) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t read(int descriptor, void* buffer, size_t size) {
    static const auto next = original("read", &read);
    return failsFor("read", descriptor) ? -1 : next(descriptor, buffer, size);
}

ssize_t pread(int descriptor, void* buffer, size_t size, off_t offset) {
    static const auto next = original("pread", &pread);
    return failsFor("read", descriptor) ? -1 : next(descriptor, buffer, size, offset);
}

ssize_t write(int descriptor, const void* buffer, size_t size) {
    static const auto next = original("write", &write);
    return failsFor("write", descriptor) ? -1 : next(descriptor, buffer, size);
}

ssize_t pwrite(int descriptor, const void* buffer, size_t size, off_t offset) {
    static const auto next = original("pwrite", &pwrite);
    return failsFor("write", descriptor) ? -1 : next(descriptor, buffer, size, offset);
}

int open(const char* path, int flags, ...) {
    static const auto next = original("open", &open);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return failsAt("open", path) ? -1 : next(path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    static const auto next = original("openat", &openat);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return failsAt("open", path) ? -1 : next(directory, path, flags, mode);
}

int mkdirat(int directory, const char* path, mode_t mode) {
    static const auto next = original("mkdirat", &mkdirat);
    return failsAt("mkdir", path) ? -1 : next(directory, path, mode);
}

int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags) {
    static const auto next = original("linkat", &linkat);
    return failsAt("rename", to) ? -1 : next(fromDirectory, from, toDirectory, to, flags);
}

int renameat(int fromDirectory, const char* from, int toDirectory, const char* to) noexcept {
    static const auto next = original("renameat", &renameat);
    return failsAt("rename", to) ? -1 : next(fromDirectory, from, toDirectory, to);
}

int fsync(int descriptor) {
    static const auto next = original("fsync", &fsync);
    return failsFor("fsync", descriptor) ? -1 : next(descriptor);
}

} // extern "C"
