#include "cli/files/OpenBelow.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "cli/files/Uninterrupted.h"

namespace olmkit {

namespace {

constexpr int pathFlags = O_NOFOLLOW | O_CLOEXEC;

// Whether every level of `path` is a name, so that it leads to a place below.
bool leadsDown(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) {
        return false;
    }
    for (;;) {
        const std::size_t end = path.find('/');
        const std::string_view level = path.substr(0, end);
        if (level.empty() || level == "." || level == "..") {
            return false;
        }
        if (end == std::string_view::npos) {
            return true;
        }
        path.remove_prefix(end + 1);
    }
}

bool isLink(int folder, const char* name) {
    struct stat status = {};
    return fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

// Returns 0 for a regular file, otherwise an errno value.
int faultOf(int file) {
    struct stat status = {};
    if (fstat(file, &status) != 0) {
        return errno;
    }
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : ENODEV;
}

// Opens one level of a path in the folder `parent`. Returns 0 or an errno value.
int openLevel(int parent, const std::string& level, int flags, int& entered) {
    entered = uninterrupted([&] { return openat(parent, level.c_str(), flags | pathFlags); });
    if (entered >= 0) {
        return 0;
    }
    const int error = errno;
    return isLink(parent, level.c_str()) ? ELOOP : error;
}

} // namespace

int openBelow(int folder, const std::string& path, int& file) {
    file = -1;
    if (!leadsDown(path)) {
        return EINVAL;
    }
    int parent = fcntl(folder, F_DUPFD_CLOEXEC, 0);
    int error = parent < 0 ? errno : 0;
    std::string_view rest = path;
    for (std::size_t end = rest.find('/'); error == 0 && end != std::string_view::npos;
         end = rest.find('/')) {
        int entered = -1;
        error = openLevel(parent, std::string(rest.substr(0, end)), O_PATH | O_DIRECTORY, entered);
        close(std::exchange(parent, entered));
        rest.remove_prefix(end + 1);
    }
    if (error == 0) {
        // Without O_NONBLOCK, opening a pipe would wait for a writer.
        error = openLevel(parent, std::string(rest), O_RDONLY | O_NONBLOCK, file);
    }
    if (parent >= 0) {
        close(parent);
    }
    if (error == 0) {
        error = faultOf(file);
    }
    if (error != 0 && file >= 0) {
        close(std::exchange(file, -1));
    }
    return error;
}

} // namespace olmkit
