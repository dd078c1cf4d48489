#include "cli/verify/Verifier.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/files/Sha256.h"
#include "cli/terminal/Messages.h"

namespace olmkit {

namespace {

namespace fs = std::filesystem;

// What this program itself puts beside the messages.
bool isOwnFile(const std::string& path) {
    static constexpr std::array<std::string_view, 5> names = {
        "manifest.jsonl", "manifest.jsonl.part", "shard.json", "summary.json", "unfinished.json"};
    return std::ranges::find(names, path) != names.end();
}

} // namespace

void Verifier::check(const ManifestRow& row) {
    if (row.path.empty()) {
        ++failed;
    } else {
        ++messages;
        check(row.path, row.size, row.sha256);
    }
    for (const AttachmentRow& attachment : row.attachments) {
        if (!attachment.path.empty()) {
            ++attachments;
            check(attachment.path, attachment.size.value_or(0), attachment.sha256);
        }
    }
}

void Verifier::check(const std::string& path, std::uint64_t size, const std::string& sha256) {
    if (remembers) {
        named.insert(path);
    }
    Difference difference;
    difference.path = path;
    difference.expectedSize = size;
    difference.expectedSha256 = sha256;
    int file = -1;
    const bool isGood = open(difference, file) && compare(difference, file);
    if (file >= 0) {
        close(file);
    }
    if (!isGood) {
        tell(difference);
        return;
    }
    ++good;
    bytes += size;
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
        difference.reason = "a symbolic link is in its path, and is not followed";
        return false;
    case ENODEV:
        difference.problem = Problem::Unreadable;
        difference.reason = "it is no file";
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
    // It may have become longer meanwhile.
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
        if (!isFolder && !isOwnFile(name) && !named.contains(name)) {
            others.push_back(std::move(name));
        }
        place.increment(error);
    }
    std::ranges::sort(others);
    for (std::string& other : others) {
        Difference difference;
        difference.problem = Problem::Unexpected;
        difference.path = std::move(other);
        tell(difference);
    }
    if (error) {
        Difference difference;
        difference.problem = Problem::Unreadable;
        difference.path = path;
        difference.reason = error.message();
        tell(difference);
    }
}

void Verifier::tell(const Difference& difference) {
    ++differences;
    listener(difference);
}

} // namespace olmkit
