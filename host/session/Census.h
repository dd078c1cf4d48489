#ifndef OLMKIT_HOST_SESSION_CENSUS_H
#define OLMKIT_HOST_SESSION_CENSUS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/stream/Export.h"

namespace olmhost {

enum class ItemKind : std::size_t { Email, Appointment, Contact, Group, Task, Note };

inline constexpr std::size_t itemKindCount = 6;

// Returns the name of a kind for scripts: "email", "appointment" and so on.
OLMHOST_EXPORT std::string_view nameOf(ItemKind kind);

// The totals of the documents of one kind.
struct KindCensus {
    std::uint64_t documents = 0;
    std::uint64_t items = 0;
    std::uint64_t attachments = 0;        // of these items, with an entry's name
    std::uint64_t unnamedAttachments = 0; // without an entry's name

    bool operator==(const KindCensus&) const = default;
};

// Why an entry whose name ends in ".xml" has no items, or not as many rows as items.
enum class DocumentFinding {
    Categories,  // it has the names and colours of categories, and no items
    OtherRoot,   // its root element is not of a known kind
    NoItems,     // its root element is known, and it has no items
    Empty,       // it has no bytes
    Unreadable,  // no root element or no item of it can be read
    NotListed,   // it has items, and the module never opened it
    OtherNumber, // it has items, and the module sent another number of rows
};

// One such entry.
struct DocumentNote {
    std::uint64_t entryIndex = 0;
    DocumentFinding finding = DocumentFinding::NoItems;
    std::uint64_t items = 0; // in the document
    std::uint64_t rows = 0;  // that the module sent
    std::string text;        // human-readable, one line, without the entry's name

    // Returns whether items are missing without a fault that explains it.
    bool isMismatch() const {
        return finding == DocumentFinding::NotListed || finding == DocumentFinding::OtherNumber;
    }
};

// What is in an archive's documents, counted by the host's own parser, whatever the module makes of
// them: the children of a root element that have the name of its kind's items.
struct Census {
    std::array<KindCensus, itemKindCount> kinds;
    std::vector<DocumentNote> notes; // in the order of the entries
    std::uint64_t entries = 0;       // of the archive's directory, counted so far
    bool hasKnownRoot = false;       // one of the documents is of a known kind, or has categories

    const KindCensus& of(ItemKind kind) const { return kinds[static_cast<std::size_t>(kind)]; }
};

// An attachment that an item names. What it points to is valid only during the callback.
struct NamedAttachment {
    ItemKind kind = ItemKind::Email; // of the item
    std::string_view entryName;      // UTF-8, as the item has it
    std::string_view name;           // UTF-8, to display; empty when there is none
};

// Receives each attachment that has the name of an entry, once, in the order of the documents. May
// not throw. Of the session it may call the functions about entries.
using AttachmentCallback = std::function<void(const NamedAttachment&)>;

} // namespace olmhost

#endif
