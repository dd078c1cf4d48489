#ifndef OLMKIT_TESTS_UNIT_WRITERS_ITEMKINDS_H
#define OLMKIT_TESTS_UNIT_WRITERS_ITEMKINDS_H

#include <iosfwd>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>

#include "filter/storage/OLMMsgWriter.h"
#include "tests/fakehost/Extraction.h"

// A writer of that class; those that read the archive get it.
template <class Writer>
std::unique_ptr<Writer> newWriter(SODOSPECIALARC* request, ArchiveDirectory* archive) {
    if constexpr (std::is_constructible_v<Writer, SODOSPECIALARC*, ArchiveDirectory*>) {
        return std::make_unique<Writer>(request, archive);
    } else {
        return std::make_unique<Writer>(request);
    }
}

// One kind of item: how to script it, what writes it, and what every message of it begins and ends
// with.
struct ItemKind {
    const char* name;                     // in the names of tests
    const char* element;                  // name of the item's own element
    fakehost::ItemDocument (*item)();     // an item with nothing in it
    fakehost::ItemDocument (*fullItem)(); // see FullItems.h
    // With the entries that fullItem() names.
    fakehost::ItemRun (*fullRun)() = [] { return fakehost::ItemRun(); };
    std::unique_ptr<OLMMsgWriter> (*writer)(SODOSPECIALARC* request, ArchiveDirectory* archive);
    std::u16string_view messageClass;
    uint64_t classSize; // of the message class in its entry

    // Entries in hex digits: those behind the required ones of every message, and the last ones of
    // an item with nothing in it. Of these also the tags, or the named ids that tell the tags.
    const char* entriesAhead = "";
    const char* entriesBehind = "";
    std::span<const uint32_t> behind = {};

    friend void PrintTo(const ItemKind& kind, std::ostream* out);
};

extern const ItemKind mailKind;
extern const ItemKind appointmentKind;
extern const ItemKind taskKind;
extern const ItemKind noteKind;
extern const ItemKind contactKind;
extern const ItemKind groupKind;

#endif
