#ifndef OLMKIT_TESTS_UNIT_WRITERS_ITEMKINDS_H
#define OLMKIT_TESTS_UNIT_WRITERS_ITEMKINDS_H

#include <iosfwd>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>

#include "filter/storage/OLMMsgWriter.h"
#include "tests/fakehost/Extraction.h"

// Returns a writer of a class, with the archive if it reads from there.
template <class Writer>
std::unique_ptr<Writer> newWriter(SODOSPECIALARC* request, ArchiveDirectory* archive) {
    if constexpr (std::is_constructible_v<Writer, SODOSPECIALARC*, ArchiveDirectory*>) {
        return std::make_unique<Writer>(request, archive);
    } else {
        return std::make_unique<Writer>(request);
    }
}

// One kind of item: how to script it, what writes it, and how every message of it begins and ends.
struct ItemKind {
    const char* name;                     // in the names of tests
    const char* element;                  // name of the item's own element
    fakehost::ItemDocument (*item)();     // an item with nothing in it
    fakehost::ItemDocument (*fullItem)(); // see FullItems.h
    // A run with the entries that fullItem() names.
    fakehost::ItemRun (*fullRun)() = [] { return fakehost::ItemRun(); };
    std::unique_ptr<OLMMsgWriter> (*writer)(SODOSPECIALARC* request, ArchiveDirectory* archive);
    std::u16string_view messageClass;
    uint64_t classSize; // of the message class in its entry

    // Entries in hex digits: those after the required ones of every message, and the last ones of
    // an item with nothing in it. Of the latter also the tags, or the named ids to find them by.
    const char* leadingEntries = "";
    const char* trailingEntries = "";
    std::span<const uint32_t> trailingTags = {};

    friend void PrintTo(const ItemKind& kind, std::ostream* out);
};

extern const ItemKind mailKind;
extern const ItemKind appointmentKind;
extern const ItemKind taskKind;
extern const ItemKind noteKind;
extern const ItemKind contactKind;
extern const ItemKind groupKind;

#endif
