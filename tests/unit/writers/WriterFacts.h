#ifndef OLMKIT_TESTS_UNIT_WRITERS_WRITERFACTS_H
#define OLMKIT_TESTS_UNIT_WRITERS_WRITERFACTS_H

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/writers/ItemMessages.h"

// The names and values of a tag table, in its order.
using TagRows = std::vector<std::pair<std::string, uint64_t>>;

// Elements of one item, and the entries or the tags that they become together.
struct CopiedStrings {
    std::vector<const char*> elements;
    std::vector<uint32_t> tags;
};
struct ReadValues {
    std::vector<const char*> elements;
    std::vector<fakehost::PropertyEntry> entries;
};

// An element, and the tag of the string it becomes.
struct StringElement {
    const char* element;
    uint32_t tag;
};

struct RepeatedElement {
    const char* element;
    const char* text;
    fakehost::PropertyEntry entry;
};

// What the tests of all writers need to know about each.
struct WriterFacts {
    const ItemKind* kind;
    TagRows table = {};              // not for the contact: see OLMMsgContactWriterTest
    uint32_t rows;                   // of the table
    int percent;                     // progress by one element
    std::vector<uint32_t> otherTags; // ids left to the generic handling

    // The streams of an item with nothing in it: the tags of the values, which are empty, and the
    // named properties in hex digits.
    std::vector<uint32_t> emptyStrings = {};
    const char* sets = "";
    const char* names = "";
    std::vector<NamesStream> buckets = {};

    const char* unknown = "stranger"; // an element that is not in the table
    StringElement string;
    RepeatedElement repeated;
    StringElement unread; // not read after as many of these as the table has rows
    const char* categories;
    uint32_t categoriesTag = 0x8000101F;
    CopiedStrings strings;
    ReadValues values; // times, numbers and truth values, as they are when their text is invalid

    friend void PrintTo(const WriterFacts& row, std::ostream* out) { PrintTo(*row.kind, out); }
};

WriterFacts mailFacts();
WriterFacts appointmentFacts();
WriterFacts taskFacts();
WriterFacts noteFacts();
WriterFacts contactFacts();
WriterFacts groupFacts();

#endif
