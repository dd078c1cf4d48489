// A library to preload: appends the calls that name files or wait for the disk to the file
// $RECORDED_CALLS, one a line. The $FAILING_SYNC-th wait for the disk fails.

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

void record(const char* call, const char* name) {
    const char* const path = std::getenv("RECORDED_CALLS");
    if (std::FILE* const file = path == nullptr ? nullptr : std::fopen(path, "a")) {
        std::fprintf(file, "%s %s\n", call, name);
        std::fclose(file);
    }
}

template <typename Function> Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int waitForDisk(const char* call, int file) {
    record(call, "");
    static int count = 0;
    const char* const failing = std::getenv("FAILING_SYNC");
    if (failing != nullptr && ++count == std::atoi(failing)) {
        errno = EIO;
        return -1;
    }
    return next<int(int)>(call)(file);
}

} // namespace

extern "C" {

int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
    record("rename", to);
    return next<int(int, const char*, int, const char*)>("renameat")(fromFolder, from, toFolder,
                                                                     to);
}

int unlinkat(int folder, const char* name, int flags) {
    record("remove", name);
    return next<int(int, const char*, int)>("unlinkat")(folder, name, flags);
}

int syncfs(int file) {
    return waitForDisk("syncfs", file);
}

int fsync(int file) {
    return waitForDisk("fsync", file);
}
}
