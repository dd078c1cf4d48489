#include "cli/manifest/Manifest.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <span>
#include <utility>

#include "cli/files/FileBytes.h"
#include "cli/files/Uninterrupted.h"
#include "cli/manifest/RunFiles.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

Manifest::~Manifest() {
    if (file >= 0) {
        close(file);
    }
}

int Manifest::begin() {
    if (const int error = directory.createFile(runfile::manifestPart, file); error != 0) {
        return error;
    }
    return directory.remove(runfile::manifestKept);
}

int Manifest::resume() {
    if (const int error = collectKeptLines(); error != 0) {
        return error;
    }
    if (directory.has(runfile::manifestKept)) {
        if (const int error = kept.open(directory, runfile::manifestKept); error != 0) {
            return error;
        }
    }
    return directory.createFile(runfile::manifestPart, file);
}

// Moves all lines of earlier runs to runfile::manifestKept. No step of it can lose a line.
int Manifest::collectKeptLines() {
    const bool hasKept = directory.has(runfile::manifestKept);
    if (directory.has(runfile::manifestPart)) {
        return hasKept ? appendPartToKept()
                       : directory.rename(runfile::manifestPart, runfile::manifestKept);
    }
    // A run that stopped by itself had time to rename its lines.
    return !hasKept && directory.has(runfile::manifest)
               ? directory.rename(runfile::manifest, runfile::manifestKept)
               : 0;
}

int Manifest::appendPartToKept() {
    const std::optional<std::string> part = directory.readFile(runfile::manifestPart);
    int target = -1;
    int error = part.has_value() ? directory.openToAppend(runfile::manifestKept, target) : EIO;
    if (error == 0) {
        // The last kept line may have no end; an empty line does no harm.
        error = append(target, "\n" + *part);
        close(target);
    }
    return error != 0 ? error : directory.remove(runfile::manifestPart);
}

int Manifest::add(const std::string& line) {
    const int error = append(file, line);
    if (error == 0) {
        size += line.size();
        sha256.add(std::as_bytes(std::span(line)));
        ++ownSeal.lines;
    }
    return error;
}

const ManifestSeal& Manifest::seal() {
    if (ownSeal.sha256.empty()) {
        ownSeal.sha256 = sha256.end();
    }
    return ownSeal;
}

int Manifest::finish() {
    // Cuts off what a full disk left of the last line.
    if (uninterrupted([this] { return ftruncate(file, static_cast<off_t>(size)); }) != 0) {
        return errno;
    }
    if (const int error = closeFile(std::exchange(file, -1)); error != 0) {
        return error;
    }
    // A run that was asked to stop has no time for it, and the one that resumes it checks each
    // file.
    if (const int error = Interrupt::isRequested() ? 0 : directory.sync(); error != 0) {
        return error;
    }
    if (const int error = directory.rename(runfile::manifestPart, runfile::manifest); error != 0) {
        return error;
    }
    return directory.remove(runfile::manifestKept);
}

int Manifest::breakOff(std::uint64_t end) {
    for (std::size_t place = kept.find(end); place < kept.count(); ++place) {
        if (const int error = add(kept.line(place)); error != 0) {
            // The kept lines are still in their own file.
            close(std::exchange(file, -1));
            return error;
        }
    }
    return finish();
}

} // namespace olmkit
