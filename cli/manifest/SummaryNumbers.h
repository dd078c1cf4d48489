#ifndef OLMKIT_CLI_MANIFEST_SUMMARYNUMBERS_H
#define OLMKIT_CLI_MANIFEST_SUMMARYNUMBERS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// How much of the archive an extraction was to write.
enum class RunExtent {
    Whole,     // every item
    Shard,     // every item of one shard
    Selection, // chosen items
};

// The kinds of items as rows have them; the last one is that of an item without a row.
inline constexpr std::array<std::string_view, 6> summaryKinds = {"email", "appointment", "contact",
                                                                 "task",  "note",        "unknown"};
inline constexpr std::size_t emailPlace = 0;
inline constexpr std::size_t unknownPlace = summaryKinds.size() - 1;

// Documents and items of one kind.
struct KindNumbers {
    std::uint64_t documents = 0;
    std::uint64_t items = 0; // in the documents, by the host's own count
    std::uint64_t listed = 0;
    std::uint64_t requested = 0;
    std::uint64_t written = 0;
    std::uint64_t failed = 0;
};

struct AttachmentNumbers {
    std::uint64_t ofMails = 0;      // that name an entry of the archive
    std::uint64_t unnamed = 0;      // of mails, without the name of an entry
    std::uint64_t ofOtherItems = 0; // whose messages take no attachments
    std::uint64_t written = 0;
    std::uint64_t lost = 0;

    std::uint64_t named() const { return ofMails + unnamed + ofOtherItems; }
};

// An entry that looks like a document and gave no rows, or another number of rows than it has
// items.
struct NotedEntry {
    std::uint64_t entry = 0;
    std::string name;
    std::uint64_t items = 0;
    std::uint64_t listed = 0;
    bool isMismatch = false; // items are missing, and no fault of the entry explains it
    std::string reason;
};

// What the summary of an extraction says. docs/files.md describes the file.
struct SummaryNumbers {
    RunExtent extent = RunExtent::Selection;
    bool addsUp = true;
    std::array<KindNumbers, summaryKinds.size()> kinds; // in the order of summaryKinds
    AttachmentNumbers attachments;
    std::vector<std::string> findings; // what does not add up or was lost, one line each
    std::vector<NotedEntry> notedEntries;

    // Returns the numbers of a kind; those of the last kind for any other text.
    KindNumbers& of(std::string_view kind);
};

} // namespace olmkit

#endif
