#include "cli/extract/Manifest.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace olmkit {

namespace {

int writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(file, text.data(), text.size());
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return written == 0 ? EIO : errno;
        }
    }
    return 0;
}

} // namespace

Manifest::~Manifest() {
    if (file >= 0) {
        close(file);
    }
}

int Manifest::begin() {
    if (const int error = directory.createFile(partName, file); error != 0) {
        return error;
    }
    return directory.remove(keptName);
}

int Manifest::goOn() {
    if (const int error = setKeptAside(); error != 0) {
        return error;
    }
    if (directory.has(keptName)) {
        if (const int error = kept.open(directory, keptName); error != 0) {
            return error;
        }
    }
    return directory.createFile(partName, file);
}

// Puts all lines of earlier runs into the file of those. A kill on the way loses none of them.
int Manifest::setKeptAside() {
    const bool hasKept = directory.has(keptName);
    if (directory.has(partName)) {
        return hasKept ? appendPartToKept() : directory.rename(partName, keptName);
    }
    // A run that was interrupted in peace.
    return !hasKept && directory.has(fileName) ? directory.rename(fileName, keptName) : 0;
}

int Manifest::appendPartToKept() {
    const std::optional<std::string> part = directory.readFile(partName);
    int target = -1;
    int error = part.has_value() ? directory.openToAppend(keptName, target) : EIO;
    if (error == 0) {
        // Its last line may be broken off.
        error = writeAll(target, "\n" + *part);
        close(target);
    }
    return error != 0 ? error : directory.remove(partName);
}

int Manifest::add(const std::string& line) {
    const int error = writeAll(file, line);
    if (error == 0) {
        size += line.size();
    }
    return error;
}

int Manifest::finish() {
    // Of a line that met a full disk a part may stand there.
    if (ftruncate(file, static_cast<off_t>(size)) != 0) {
        return errno;
    }
    if (close(std::exchange(file, -1)) != 0) {
        return errno;
    }
    if (const int error = directory.rename(partName, fileName); error != 0) {
        return error;
    }
    return directory.remove(keptName);
}

int Manifest::breakOff(std::uint64_t end) {
    for (std::size_t place = kept.find(end); place < kept.count(); ++place) {
        if (const int error = add(kept.line(place)); error != 0) {
            // All of them still stand where they were.
            close(std::exchange(file, -1));
            return error;
        }
    }
    return finish();
}

} // namespace olmkit
