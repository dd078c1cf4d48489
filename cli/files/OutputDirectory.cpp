#include "cli/files/OutputDirectory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/files/OpenBelow.h"
#include "cli/files/SafeName.h"
#include "cli/files/Uninterrupted.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

namespace {

constexpr mode_t folderMode = 0777; // less the umask
constexpr mode_t fileMode = 0666;
constexpr std::string_view temporaryStart = ".olmkit-";
constexpr std::string_view temporaryEnd = ".part";
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Errors that concern one name or place, not the whole disk.
constexpr std::array localErrors = {EACCES, EEXIST, EFBIG,   EILSEQ,       EINVAL,    EISDIR,
                                    ELOOP,  EPERM,  ENOTDIR, ENAMETOOLONG, ENOTEMPTY, EXDEV};

// Opens the folder `name` in `parent`, and creates it when it is missing. Closes `parent` and
// replaces it. Returns 0 or an errno value.
int enterFolder(int& parent, const std::string& name) {
    int error = 0;
    if (uninterrupted([&] { return mkdirat(parent, name.c_str(), folderMode); }) != 0 &&
        errno != EEXIST) {
        error = errno;
    }
    int entered = -1;
    if (error == 0) {
        entered =
            uninterrupted([&] { return openat(parent, name.c_str(), folderFlags | O_NOFOLLOW); });
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

// Whether the path of a file in these folders may exceed what a program can open by its path, were
// its name as long as a name can be. They could still be made, one by one.
bool isTooDeep(int root, const std::vector<std::string>& folders) {
    std::error_code error;
    const std::filesystem::path path =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(root), error);
    std::size_t length = path.native().size() + 1;
    for (const std::string& name : folders) {
        length += name.size() + 1;
    }
    return error == std::errc::filename_too_long || length + maxNameBytes >= PATH_MAX;
}

// Returns 0 or an errno value.
int renameFile(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    return uninterrupted(
               [&] { return renameat(fromFolder, from.c_str(), toFolder, to.c_str()); }) == 0
               ? 0
               : errno;
}

// Copies the contents and times of a file. Returns 0 or an errno value.
int copyFile(int from, int to) {
    ssize_t count = 0;
    do {
        constexpr std::size_t maxCount = std::size_t{1} << 30;
        count = uninterrupted([&] { return sendfile(to, from, nullptr, maxCount); });
    } while (count > 0);
    struct stat status = {};
    if (count < 0 || fstat(from, &status) != 0) {
        return errno;
    }
    const std::array<timespec, 2> times = {status.st_atim, status.st_mtim};
    return futimens(to, times.data()) == 0 ? 0 : errno;
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
    do {
        std::filesystem::create_directories(path, error);
    } while (error == std::errc::interrupted);
    root = uninterrupted([&] { return ::open(path.c_str(), folderFlags); });
    if (root < 0) {
        return errno == ENOENT && error ? error.value() : errno;
    }
    // On a file system without locks, nobody holds one.
    const int locked = uninterrupted([this] { return flock(root, LOCK_EX | LOCK_NB); });
    return locked != 0 && errno == EWOULDBLOCK ? EWOULDBLOCK : 0;
}

int OutputDirectory::openForReading(const std::string& path) {
    root = uninterrupted([&] { return ::open(path.c_str(), folderFlags); });
    return root < 0 ? errno : 0;
}

std::string OutputDirectory::nextTemporaryName() {
    return std::string(temporaryStart) + std::to_string(getpid()) + "-" +
           std::to_string(++temporaries) + std::string(temporaryEnd);
}

int OutputDirectory::createTemporary(std::optional<TemporaryFile>& file) {
    const Interrupt::Delay delay;
    std::string name;
    int made = -1;
    do {
        name = nextTemporaryName();
        made = uninterrupted([&] {
            return openat(root, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                          fileMode);
        });
    } while (made < 0 && errno == EEXIST);
    if (made < 0) {
        return errno;
    }
    Interrupt::Guard guard(root, name);
    file.emplace(root, std::move(name), made, std::move(guard));
    return 0;
}

int OutputDirectory::place(TemporaryFile& file, const OutputPath& path) {
    if (const int failure = openFolders(path.folders); failure != 0) {
        return failure;
    }
    const int error = renameFile(root, file.name(), folder, path.file);
    if (error == 0) {
        file.keep();
    }
    return error;
}

int OutputDirectory::sync() {
    return !isSynced || uninterrupted([this] { return syncfs(root); }) == 0 ? 0 : errno;
}

int OutputDirectory::syncNames() {
    if (!isSynced || uninterrupted([this] { return fsync(root); }) == 0) {
        return 0;
    }
    return errno == EINVAL ? 0 : errno; // some file systems have nothing to sync in a folder
}

int OutputDirectory::removeLeftovers() {
    const int again = uninterrupted([this] { return openat(root, ".", folderFlags); });
    DIR* const listing = again < 0 ? nullptr : fdopendir(again);
    if (listing == nullptr) {
        return errno;
    }
    while (const dirent* const entry = readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (name.starts_with(temporaryStart) && name.ends_with(temporaryEnd)) {
            unlinkat(root, entry->d_name, 0);
        }
    }
    closedir(listing);
    return 0;
}

int OutputDirectory::openFile(const std::string& path, int& file) const {
    return openBelow(root, path, file);
}

int OutputDirectory::createFile(const std::string& name, int& file) {
    // Not truncated: it may be a link, or have another name as well.
    if (const int error = remove(name); error != 0) {
        return error;
    }
    file = uninterrupted([&] {
        return openat(root, name.c_str(),
                      O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode);
    });
    return file < 0 ? errno : 0;
}

int OutputDirectory::openToAppend(const std::string& name, int& file) {
    file = uninterrupted(
        [&] { return openat(root, name.c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_CLOEXEC); });
    return file < 0 ? errno : 0;
}

int OutputDirectory::rename(const std::string& from, const std::string& to) {
    return renameFile(root, from, root, to);
}

int OutputDirectory::remove(const std::string& name) {
    const int removed = uninterrupted([&] { return unlinkat(root, name.c_str(), 0); });
    return removed == 0 || errno == ENOENT ? 0 : errno;
}

bool OutputDirectory::has(const std::string& name) const {
    struct stat status = {};
    return fstatat(root, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

int OutputDirectory::putFile(const std::string& name, const std::string& contents) {
    std::optional<TemporaryFile> file;
    if (const int error = createTemporary(file); error != 0) {
        return error;
    }
    Output output(file->descriptor());
    output.buffer() = contents;
    if (!output.flush()) {
        return output.errorNumber();
    }
    const int error = file->close();
    return error != 0 ? error : place(*file, {{}, name});
}

std::optional<std::string> OutputDirectory::readFile(const std::string& name) const {
    int file = -1;
    if (openFile(name, file) != 0) {
        return std::nullopt;
    }
    std::string contents;
    std::array<char, 4096> part = {};
    ssize_t count = 0;
    while ((count = uninterrupted([&] { return read(file, part.data(), part.size()); })) > 0) {
        contents.append(part.data(), static_cast<std::size_t>(count));
    }
    close(file);
    return count == 0 ? std::optional(contents) : std::nullopt;
}

int OutputDirectory::linkFrom(const OutputDirectory& from, const std::string& source,
                              const OutputPath& path) {
    int original = -1;
    if (const int error = from.openFile(source, original); error != 0) {
        return error;
    }
    std::optional<TemporaryFile> file;
    int error = linkTemporary(original, file);
    if (error != 0) {
        file.reset();
        error = createTemporary(file);
        error = error == 0 ? copyFile(original, file->descriptor()) : error;
    }
    close(original);
    if (error == 0) {
        error = file->close();
    }
    return error == 0 ? place(*file, path) : error;
}

// Makes a temporary file that is a hard link to the open file `original`.
int OutputDirectory::linkTemporary(int original, std::optional<TemporaryFile>& file) {
    const Interrupt::Delay delay;
    const std::string name = nextTemporaryName();
    const std::string source = "/proc/self/fd/" + std::to_string(original);
    const int linked = uninterrupted(
        [&] { return linkat(AT_FDCWD, source.c_str(), root, name.c_str(), AT_SYMLINK_FOLLOW); });
    if (linked != 0) {
        return errno;
    }
    Interrupt::Guard guard(root, name);
    file.emplace(root, name, -1, std::move(guard));
    return 0;
}

bool OutputDirectory::isSameAs(const OutputDirectory& other) const {
    struct stat own = {};
    struct stat others = {};
    return fstat(root, &own) == 0 && fstat(other.root, &others) == 0 &&
           own.st_dev == others.st_dev && own.st_ino == others.st_ino;
}

int OutputDirectory::openFolders(const std::vector<std::string>& folders) {
    if (folder >= 0 && folders == openedFolders) {
        return 0;
    }
    if (isTooDeep(root, folders)) {
        return ENAMETOOLONG;
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
        return "a symbolic link is in the place of a folder and is not followed; remove it";
    }
    if (errorNumber == EWOULDBLOCK) {
        return "another run is writing to it; wait until it has ended";
    }
    if (errorNumber == ENAMETOOLONG) {
        return "the path is too long; choose a shorter output folder, or extract with --layout "
               "flat";
    }
    return errorText(errorNumber);
}

bool stopsEverything(int errorNumber) {
    return std::ranges::find(localErrors, errorNumber) == localErrors.end();
}

} // namespace olmkit
