#include "cli/verify/Verifier.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <vector>

#include "cli/files/Sha256.h"
#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryFile.h"
#include "cli/terminal/Messages.h"

namespace olmkit {

namespace {

namespace fs = std::filesystem;

} // namespace

void Verifier::check(const ManifestRow& row) {
    const std::vector<ListedFile> files = filesOf(row);
    const bool hasMessage = !row.path.empty();
    ++(hasMessage ? messages : failed);
    attachments += files.size() - (hasMessage ? 1 : 0);
    for (const ListedFile& file : files) {
        check(file);
    }
}

void Verifier::check(const ListedFile& file) {
    if (remembers) {
        listedPaths.insert(file.path);
    }
    Difference difference;
    difference.path = file.path;
    difference.expectedSize = file.size;
    difference.expectedSha256 = file.sha256;
    int descriptor = -1;
    const bool isGood = open(difference, descriptor) && compare(difference, descriptor);
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!isGood) {
        add(difference);
        return;
    }
    ++good;
    bytes += file.size;
}

bool Verifier::checkManifest(int file) {
    if (!directory.has(runfile::summary)) {
        return false;
    }
    Difference difference;
    const std::optional<std::string> text = directory.readFile(runfile::summary);
    const std::optional<ManifestSeal> expected = text ? readSeal(*text) : std::nullopt;
    if (!expected.has_value()) {
        difference.path = runfile::summary;
        difference.problem = Problem::Unreadable;
        difference.reason = "it does not describe the manifest";
        add(difference);
        return true;
    }
    difference.path = runfile::manifest;
    const std::optional<ManifestSeal> found = sealOfFile(file);
    if (!found.has_value()) {
        difference.problem = Problem::Unreadable;
        difference.reason = errorText(errno);
        add(difference);
    } else if (found != expected) {
        difference.problem = found->lines != expected->lines ? Problem::Lines : Problem::Hash;
        difference.expectedLines = expected->lines;
        difference.lines = found->lines;
        difference.expectedSha256 = expected->sha256;
        difference.sha256 = found->sha256;
        add(difference);
    }
    return true;
}

bool Verifier::open(Difference& difference, int& file) {
    const int error = directory.openFile(difference.path, file);
    switch (error) {
    case 0:
        return true;
    case ENOENT:
    case ENOTDIR:
        difference.problem = Problem::Missing;
        return false;
    case EINVAL:
        difference.problem = Problem::Refused;
        difference.reason = "its path leads out of the folder";
        return false;
    case ELOOP:
        difference.problem = Problem::Refused;
        difference.reason = "a symbolic link is in its path and is not followed";
        return false;
    case ENODEV:
        difference.problem = Problem::Unreadable;
        difference.reason = "it is not a regular file";
        return false;
    default:
        difference.problem = Problem::Unreadable;
        difference.reason = errorText(error);
        return false;
    }
}

bool Verifier::compare(Difference& difference, int file) {
    struct stat status = {};
    if (fstat(file, &status) == 0 &&
        static_cast<std::uint64_t>(status.st_size) != difference.expectedSize) {
        difference.problem = Problem::Size;
        difference.size = static_cast<std::uint64_t>(status.st_size);
        return false;
    }
    difference.sha256 = sha256OfFile(file, difference.size);
    if (difference.sha256.empty()) {
        difference.problem = Problem::Unreadable;
        difference.reason = errorText(errno);
        return false;
    }
    // The file may have grown since fstat().
    difference.problem = difference.size != difference.expectedSize ? Problem::Size : Problem::Hash;
    return difference.size == difference.expectedSize &&
           difference.sha256 == difference.expectedSha256;
}

void Verifier::checkOthers(const std::string& path) {
    std::vector<std::string> others;
    std::error_code error;
    fs::recursive_directory_iterator place(path, error);
    while (!error && place != fs::recursive_directory_iterator()) {
        std::error_code ignored;
        const bool isFolder = place->symlink_status(ignored).type() == fs::file_type::directory;
        std::string name = place->path().lexically_relative(path).string();
        if (!isFolder && !isRunFile(name) && !listedPaths.contains(name)) {
            others.push_back(std::move(name));
        }
        place.increment(error);
    }
    std::ranges::sort(others);
    for (std::string& other : others) {
        Difference difference;
        difference.problem = Problem::Unexpected;
        difference.path = std::move(other);
        add(difference);
    }
    if (error) {
        Difference difference;
        difference.problem = Problem::Unreadable;
        difference.path = path;
        difference.reason = error.message();
        add(difference);
    }
}

void Verifier::add(const Difference& difference) {
    ++differences;
    listener(difference);
}

} // namespace olmkit
