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

// The name of a kind as scripts know it: "email", "appointment" …
OLMHOST_EXPORT std::string_view nameOf(ItemKind kind);

// What the documents of one kind hold.
struct KindCensus {
    std::uint64_t documents = 0;
    std::uint64_t items = 0;
    std::uint64_t attachments = 0;        // of these items, with the name of their entry
    std::uint64_t unnamedAttachments = 0; // without one

    bool operator==(const KindCensus&) const = default;
};

// Why an entry whose name ends in ".xml" gave other rows than it has items, or none.
enum class DocumentFinding {
    Categories,  // it holds the categories' names and colours, and is not meant to hold items
    OtherRoot,   // its root element is of no kind that is known here
    NoItems,     // its root element is known, and no item is in it
    Empty,       // it has no bytes
    Unreadable,  // no root element or no item of it can be read
    NotListed,   // it has items, and the module never looked into it
    OtherNumber, // it has items, and the module gave another number of rows
};

// One such entry.
struct DocumentNote {
    std::uint64_t entryIndex = 0;
    DocumentFinding finding = DocumentFinding::NoItems;
    std::uint64_t items = 0; // in the document
    std::uint64_t rows = 0;  // that the module gave
    std::string text;        // for people, one line, without the entry's name

    // Whether items went missing without a fault that tells so.
    bool isMismatch() const {
        return finding == DocumentFinding::NotListed || finding == DocumentFinding::OtherNumber;
    }
};

// What is in an archive's documents, counted by the host's own parser, whatever the module makes of
// them: the elements that stand directly in a root element and have the name of its kind's items.
struct Census {
    std::array<KindCensus, itemKindCount> kinds;
    std::vector<DocumentNote> notes; // in the order of the entries
    std::uint64_t entries = 0;       // of the archive's directory, that were counted so far
    bool hasKnownRoot = false;       // one of the documents is of a known kind, or of categories

    const KindCensus& of(ItemKind kind) const { return kinds[static_cast<std::size_t>(kind)]; }
};

// An attachment that an item names. Everything it points to is valid only during the callback.
struct NamedAttachment {
    ItemKind kind = ItemKind::Email; // of the item
    std::string_view entryName;      // UTF-8, as the item tells it
    std::string_view name;           // UTF-8, for people; empty when there is none
};

// Told of each attachment with the name of an entry, in the order of the documents, once. May not
// throw; of the session it may call what tells of entries.
using AttachmentCallback = std::function<void(const NamedAttachment&)>;

} // namespace olmhost

#endif
