#include "cli/extract/OutputDirectory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "cli/terminal/Messages.h"

namespace olmkit {

namespace {

constexpr mode_t folderMode = 0777; // less the umask
constexpr mode_t fileMode = 0666;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Errors that come of one name or one place.
constexpr std::array localErrors = {EACCES, EEXIST, EFBIG,   EILSEQ,       EINVAL,    EISDIR,
                                    ELOOP,  EPERM,  ENOTDIR, ENAMETOOLONG, ENOTEMPTY, EXDEV};

// A folder inside `parent`, made when it is missing. Takes the place of `parent`, which is closed.
int enterFolder(int& parent, const std::string& name) {
    int error = 0;
    if (mkdirat(parent, name.c_str(), folderMode) != 0 && errno != EEXIST) {
        error = errno;
    }
    int entered = -1;
    if (error == 0) {
        entered = openat(parent, name.c_str(), folderFlags | O_NOFOLLOW);
        error = entered < 0 ? errno : 0;
    }
    struct stat status = {};
    if (error != 0 && fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISLNK(status.st_mode)) {
        error = ELOOP;
    }
    close(parent);
    parent = entered;
    return error;
}

} // namespace

OutputDirectory::~OutputDirectory() {
    closeFolder();
    if (root >= 0) {
        close(root);
    }
}

int OutputDirectory::open(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    root = ::open(path.c_str(), folderFlags);
    if (root >= 0) {
        return 0;
    }
    return errno == ENOENT && error ? error.value() : errno;
}

int OutputDirectory::createTemporary(std::string& name, int& file,
                                     std::optional<Interrupt::Guard>& guard) {
    const Interrupt::Delay delay;
    do {
        name =
            ".olmkit-" + std::to_string(getpid()) + "-" + std::to_string(++temporaries) + ".part";
        file = openat(root, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                      fileMode);
    } while (file < 0 && errno == EEXIST);
    if (file < 0) {
        const int error = errno;
        name.clear();
        return error;
    }
    guard.emplace(root, name);
    return 0;
}

int OutputDirectory::moveTo(const std::string& temporary, const MessagePath& path) {
    if (const int error = openFolders(path.folders); error != 0) {
        return error;
    }
    return renameat(root, temporary.c_str(), folder, path.file.c_str()) == 0 ? 0 : errno;
}

void OutputDirectory::remove(const std::string& temporary) {
    unlinkat(root, temporary.c_str(), 0);
}

int OutputDirectory::openFolders(const std::vector<std::string>& folders) {
    if (folder >= 0 && folders == openedFolders) {
        return 0;
    }
    closeFolder();
    int entered = fcntl(root, F_DUPFD_CLOEXEC, 0);
    int error = entered < 0 ? errno : 0;
    for (const std::string& name : folders) {
        if (error == 0) {
            error = enterFolder(entered, name);
        }
    }
    if (error == 0) {
        folder = entered;
        openedFolders = folders;
    }
    return error;
}

void OutputDirectory::closeFolder() {
    if (folder >= 0) {
        close(std::exchange(folder, -1));
    }
}

std::string outputErrorText(int errorNumber) {
    if (errorNumber == ELOOP) {
        return "a symbolic link stands where a folder has to be, and is not followed";
    }
    return errorText(errorNumber);
}

bool stopsEverything(int errorNumber) {
    return std::ranges::find(localErrors, errorNumber) == localErrors.end();
}

} // namespace olmkit
