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

// The items of one kind.
struct KindSurvey {
    olmhost::KindCensus counted; // in the documents, by the host
    std::uint64_t listed = 0;    // as rows, by the module
    std::optional<Moment> earliest;
    std::optional<Moment> latest;
};

// An attachment whose entry is in the archive.
struct FoundAttachment {
    std::string name;       // its own, otherwise the entry's
    std::uint64_t size = 0; // bytes, uncompressed
    std::uint64_t entry = 0;
};

// What was found out about one entry.
struct EntryFinding {
    std::optional<std::uint64_t> entry; // none for the archive as a whole
    std::string entryName;
    std::string text;
};

// A ".xml" entry without rows, or whose number of rows differs from that of its items.
struct NotedDocument {
    olmhost::DocumentNote note;
    std::string entryName;
};

// What `info` reports about an archive. Texts are the archive's, as UTF-8, unchanged.
struct ArchiveSurvey {
    // Lists that could grow with the archive end here.
    static constexpr std::size_t maxAttachments = 10;
    static constexpr std::size_t maxEncrypted = 10;

    std::string archive;
    std::uint64_t size = 0;         // bytes of the archive's file
    std::uint64_t unpackedSize = 0; // bytes of all entries, uncompressed
    std::uint64_t entries = 0;      // including directories
    std::uint64_t directories = 0;
    bool isChecked = false; // the data of every entry was read

    std::array<KindSurvey, olmhost::itemKindCount> kinds;
    FolderTree folders;
    std::vector<std::pair<std::string, std::uint64_t>> accounts; // folder, items

    std::uint64_t missingAttachments = 0; // named, but without an entry in the archive
    std::vector<FoundAttachment> largest; // largest first, then in order of entries
    std::uint64_t encryptedEntries = 0;
    std::vector<EntryFinding> encrypted; // the first ones
    std::vector<NotedDocument> documents;
    std::vector<EntryFinding> faults;

    // The attachments that the documents name, all kinds together, and those of them without the
    // name of an entry.
    std::uint64_t attachments() const;
    std::uint64_t unnamedAttachments() const;

    // Returns whether something is unreadable, missing or not listed.
    bool isDamaged() const;

    // Returns the object that `info --json` prints.
    JsonObject json() const;
};

// Returns YYYY-MM-DDThh:mm:ssZ.
std::string utcText(Moment moment);

} // namespace olmkit

#endif
