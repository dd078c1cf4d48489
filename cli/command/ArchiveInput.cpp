#include "cli/command/ArchiveInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

constexpr std::size_t chunkSize = std::size_t{256} << 10; // bytes

// An owned file descriptor; -1 for none.
class Descriptor {
public:
    explicit Descriptor(int number) : number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) {
            ::close(number);
        }
    }
    int get() const { return number; }

private:
    int number;
};

std::string temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

// Opens a file without a name. Returns its descriptor, or -1 and sets errno.
int openNameless(const std::string& folder) {
    const int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_EXCL | O_CLOEXEC, 0600);
    if (file >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)) {
        return file;
    }
    // The file system has no such files: this one has a name for an instant.
    std::string name = folder + "/olmkit-XXXXXX";
    const Interrupt::Delay delay;
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0) {
        ::unlink(name.c_str());
    }
    return named;
}

// Returns 0 or an errno value.
int writeAll(int target, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(target, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

std::string pathOf(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

bool isReadable(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return file.get() >= 0;
}

ExitCode spoolFailed(const std::string& archive, int errorNumber, Messages& messages) {
    messages.error(archiveTitle(archive) + ": can't be copied to a temporary file in " +
                   temporaryFolder() + ": " + errorText(errorNumber) +
                   "; set TMPDIR to a folder with room for the archive, or use the path of a file");
    return ExitCode::OutputFailed;
}

} // namespace

ArchiveInput::ArchiveInput(std::string archive) : archive(std::move(archive)) {}

ArchiveInput::~ArchiveInput() {
    if (file >= 0) {
        ::close(file);
    }
}

ExitCode ArchiveInput::open(Messages& messages) {
    if (const ExitCode code = prepare(messages); code != ExitCode::Done) {
        return code;
    }
    const olmhost::OpenOutcome outcome = openSession.open(readable);
    if (outcome.status != olmhost::OpenStatus::Done) {
        messages.openFailure(archive, outcome);
    }
    return exitCodeOf(outcome.status);
}

// Finds or creates a file that the session can open.
ExitCode ArchiveInput::prepare(Messages& messages) {
    if (archive == standardInput) {
        return takeStandardInput(messages);
    }
    struct stat state = {};
    if (::stat(archive.c_str(), &state) == 0 && S_ISFIFO(state.st_mode)) {
        return takePipe(messages);
    }
    readable = archive; // opening it reports whatever is wrong with it
    return ExitCode::Done;
}

ExitCode ArchiveInput::takeStandardInput(Messages& messages) {
    if (::isatty(STDIN_FILENO) != 0) {
        messages.error("standard input is a terminal; pipe an archive into it, or use its path");
        return ExitCode::Usage;
    }
    struct stat state = {};
    if (::fstat(STDIN_FILENO, &state) != 0) {
        return readFailed(errno, messages);
    }
    // A file that is open at its start needs no copy, unless it was opened by a process with more
    // rights than this one.
    if (S_ISREG(state.st_mode) && ::lseek(STDIN_FILENO, 0, SEEK_CUR) == 0 &&
        isReadable(pathOf(STDIN_FILENO))) {
        readFrom(STDIN_FILENO);
        return ExitCode::Done;
    }
    return spool(STDIN_FILENO, messages);
}

ExitCode ArchiveInput::takePipe(Messages& messages) {
    const Descriptor pipe(::open(archive.c_str(), O_RDONLY | O_CLOEXEC));
    return pipe.get() < 0 ? readFailed(errno, messages) : spool(pipe.get(), messages);
}

ExitCode ArchiveInput::spool(int source, Messages& messages) {
    file = openNameless(temporaryFolder());
    if (file < 0) {
        return spoolFailed(archive, errno, messages);
    }
    const ExitCode code = copy(source, file, messages);
    if (code == ExitCode::Done) {
        readFrom(file);
    }
    return code;
}

ExitCode ArchiveInput::copy(int source, int target, Messages& messages) {
    std::vector<std::byte> chunk(chunkSize);
    for (;;) {
        if (Interrupt::isRequested()) {
            messages.error("interrupted; nothing was written");
            return ExitCode::Interrupted;
        }
        const ssize_t taken = ::read(source, chunk.data(), chunk.size());
        if (taken == 0) {
            return ExitCode::Done;
        }
        if (taken < 0) {
            if (errno != EINTR) {
                return readFailed(errno, messages);
            }
            continue;
        }
        const std::span bytes = std::span(chunk).first(static_cast<std::size_t>(taken));
        if (const int error = writeAll(target, bytes); error != 0) {
            return spoolFailed(archive, error, messages);
        }
    }
}

ExitCode ArchiveInput::readFailed(int errorNumber, Messages& messages) const {
    messages.error(archiveTitle(archive) + ": can't be read: " + errorText(errorNumber) +
                   "; check its source, then try again");
    return ExitCode::Unreadable;
}

void ArchiveInput::readFrom(int descriptor) {
    readable = pathOf(descriptor);
}

} // namespace olmkit
