#ifndef OLMKIT_CLI_INFO_ARCHIVESURVEY_H
#define OLMKIT_CLI_INFO_ARCHIVESURVEY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/info/FolderTree.h"
#include "cli/rows/JsonLine.h"
#include "cli/rows/Moment.h"
#include "host/session/Census.h"
#include "host/stream/EntryFault.h"

namespace olmkit {

// Items of one kind.
struct KindSurvey {
    olmhost::KindCensus counted; // in the documents
    std::uint64_t listed = 0;    // rows
    std::optional<Moment> earliest;
    std::optional<Moment> latest;
};

// An attachment whose entry the archive has.
struct AttachmentReport {
    std::string name; // for people; the entry's own when it has none
    std::uint64_t size = 0;
    std::uint64_t entry = 0;
};

// Something about one entry.
struct EntryReport {
    std::optional<std::uint64_t> entry; // none when no entry is concerned
    std::string entryName;
    std::string text;
};

// A ".xml" entry that gave no rows, or other than it has items.
struct DocumentReport {
    olmhost::DocumentNote note;
    std::string entryName;
};

// All that `info` tells about an archive. Texts are as the archive has them.
struct ArchiveSurvey {
    // What is told of entries one by one is told of so many at most, where they may be many.
    static constexpr std::size_t mostAttachments = 10;
    static constexpr std::size_t mostEncrypted = 10;

    std::string archive;
    std::uint64_t size = 0;         // bytes of the archive's file
    std::uint64_t unpackedSize = 0; // bytes of all entries
    std::uint64_t entries = 0;
    std::uint64_t directories = 0; // of these
    bool isChecked = false;        // every entry was read

    std::array<KindSurvey, olmhost::itemKindCount> kinds;
    FolderTree folders;
    std::vector<std::pair<std::string, std::uint64_t>> accounts; // folder, items

    std::uint64_t missingAttachments = 0;  // that name an entry which the archive doesn't have
    std::vector<AttachmentReport> largest; // largest first, then in the entries' order
    std::uint64_t encryptedEntries = 0;
    std::vector<EntryReport> encrypted; // the first ones
    std::vector<DocumentReport> documents;
    std::vector<EntryReport> faults;

    // Whether something can't be read, is missing, or would go missing.
    bool isDamaged() const;

    JsonObject json() const;
};

// A moment as archives have them, with a "Z".
std::string momentText(Moment moment);

} // namespace olmkit

#endif
