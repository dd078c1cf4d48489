#ifndef OLMKIT_HOST_CHECK_FILECHECK_H
#define OLMKIT_HOST_CHECK_FILECHECK_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/check/Finding.h"
#include "host/check/RandomAccess.h"
#include "host/stream/Export.h"

namespace olmhost {

// What a file is checked as.
enum class FileKind {
    Message,      // a message in a compound file (MS-OXMSG and MS-CFB)
    CompoundFile, // a compound file, whatever is in it (MS-CFB)
};

struct CheckOptions {
    FileKind kind = FileKind::Message;

    // Findings that are held; the others are counted.
    std::size_t maxFindings = 1000;
};

// What was found in a file.
struct CheckResult {
    // The first ones, in the order in which they were found: container first, then message.
    std::vector<Finding> findings;

    // All of them, whether held or not.
    std::uint64_t errors = 0;
    std::uint64_t warnings = 0;
    std::uint64_t advice = 0;

    // The errno of a failure to read the file, 0 when it was read. After a failure the findings are
    // those from before it, and the rest of the file is unchecked.
    int errorNumber = 0;

    // What the file consists of; 0 for what the check didn't reach.
    std::uint64_t fileSize = 0; // bytes
    std::uint64_t sectors = 0;
    std::uint64_t freeSectors = 0;
    std::uint64_t storages = 0; // without the root
    std::uint64_t streams = 0;
    std::uint64_t embeddedMessages = 0;
    std::uint64_t recipients = 0;
    std::uint64_t attachments = 0;
    std::uint64_t properties = 0;
    std::uint64_t namedProperties = 0;

    // Returns whether the file was read and has no errors; warnings and advice don't count.
    bool isGood() const { return errorNumber == 0 && errors == 0; }
};

// Checks a file. The file may be hostile: whatever it contains, the check ends, in time that is
// proportional to the file's size, and never holds the file as a whole: it takes some tens of MB
// and a fraction of the size. Throws nothing but std::bad_alloc.
//
// `file` is borrowed; nothing else may use it during the call.
OLMHOST_EXPORT CheckResult checkFile(RandomAccess& file, const CheckOptions& options = {});

// The same for the regular file at `path` (bytes as the file system takes them). When it can't be
// opened, errorNumber says why.
OLMHOST_EXPORT CheckResult checkFile(const std::string& path, const CheckOptions& options = {});

} // namespace olmhost

#endif
