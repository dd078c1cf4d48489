#ifndef OLMKIT_TESTS_UNIT_WRITERS_WRITERFACTS_H
#define OLMKIT_TESTS_UNIT_WRITERS_WRITERFACTS_H

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/writers/ItemMessages.h"

// Names and values, in the order of the table.
using TagRows = std::vector<std::pair<std::string, uint64_t>>;

// Elements of one item, and the entries or the tags that they come to together.
struct CopiedStrings {
    std::vector<const char*> elements;
    std::vector<uint32_t> tags;
};
struct ReadValues {
    std::vector<const char*> elements;
    std::vector<fakehost::PropertyEntry> entries;
};

// An element, and the tag of the string that it becomes.
struct StringElement {
    const char* element;
    uint32_t tag;
};

struct RepeatedElement {
    const char* element;
    const char* text;
    fakehost::PropertyEntry entry;
};

// What the tests of all writers have to know of each.
struct WriterFacts {
    const ItemKind* kind;
    TagRows table = {};              // the contact's is with the tests of its elements
    uint32_t rows;                   // of the table
    int percent;                     // of one element
    std::vector<uint32_t> otherTags; // ids that the writer leaves to the generic handling

    // The streams of an item with nothing in it: tags of the values, which are empty, and the named
    // properties in hex digits.
    std::vector<uint32_t> emptyStrings = {};
    const char* sets = "";
    const char* names = "";
    std::vector<NamesStream> buckets = {};

    const char* unknown = "stranger"; // an element that no table has
    StringElement string;
    RepeatedElement repeated;
    StringElement unread; // behind as many of those as the table has rows
    const char* categories;
    uint32_t categoriesTag = 0x8000101F;
    CopiedStrings strings;
    ReadValues
        values; // times, numbers and truth values, and what they are without a text that is one

    friend void PrintTo(const WriterFacts& row, std::ostream* out) { PrintTo(*row.kind, out); }
};

WriterFacts mailFacts();
WriterFacts appointmentFacts();
WriterFacts taskFacts();
WriterFacts noteFacts();
WriterFacts contactFacts();
WriterFacts groupFacts();

#endif
