#ifndef OLMKIT_TESTS_UNIT_WRITERS_ITEMMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_ITEMMESSAGES_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakehost/Matchers.h"
#include "tests/unit/storage/PropertyBytes.h"
#include "tests/unit/storage/Thrown.h"
#include "tests/unit/writers/ItemKinds.h"

// What the tests of all writers share: parts of items, and parts of the messages of every kind.

inline constexpr const char* propertyStream = "__properties_version1.0";

// Attributes of a person.
inline constexpr const char* addressAttribute = "OPFContactEmailAddressAddress";
inline constexpr const char* nameAttribute = "OPFContactEmailAddressName";
inline constexpr const char* typeAttribute = "OPFContactEmailAddressType";

// Times in entries: 100-nanosecond units since 1601, minus one second.
inline constexpr uint64_t time1970 = 116444735990000000; // 1970-01-01T00:00:00
inline constexpr uint64_t timeOfOneSecond = time1970 + 10'000'000;
inline constexpr uint64_t timeIn2018 = 131740151470000000; // 2018-06-21T00:39:08

// The number of entries that every message begins with.
inline constexpr size_t requiredCount = 7;

// Adds a category list as an element of this name.
fakehost::ItemDocument& addCategories(fakehost::ItemDocument& item, const char* element,
                                      std::initializer_list<fakehost::Text> names);

// Returns the start of the property stream of every message of a kind: the header, the required
// entries and the kind's own.
fakehost::Bytes streamBegin(const ItemKind& kind, uint32_t recipients = 0,
                            uint32_t attachments = 0);

// Returns the entries that come from the item's elements: without those that every message of its
// kind begins and ends with, which must be there.
std::vector<fakehost::PropertyEntry> ownEntries(const fakehost::StoredMessage& message);

// Returns a text with its terminator, as streams of multi-valued strings hold it.
fakehost::Bytes terminated(std::u16string_view text);

// Return paths: of a property's value, of value `index` of a multi-valued property, of a
// recipient's or an attachment's storage, and of a value in one of those.
std::string valueStream(uint32_t tag);
std::string valueStream(uint32_t tag, uint32_t index);
std::string recipientStorage(uint32_t number);
std::string attachmentStorage(uint32_t number);
std::string recipientValue(uint32_t number, uint32_t tag);
std::string attachmentValue(uint32_t number, uint32_t tag);

// Expects that the storage of recipient `number` holds its number and type, the given address and
// name with their streams, `further`, and nothing else.
struct ExpectedRecipient {
    uint64_t type = 1;
    std::optional<std::u16string> address = std::nullopt;
    std::optional<std::u16string> name = std::nullopt;
    std::vector<fakehost::PropertyEntry> further = {};
};
void expectRecipient(const fakehost::StoredMessage& message, uint32_t number,
                     const ExpectedRecipient& expected);

// Returns how many storages directly below the root have a name with this prefix.
uint32_t countStorages(const fakehost::StoredMessage& message, const std::string& prefix);

// Returns a stream of the storage of named properties; the tag has eight digits.
fakehost::Bytes nameStream(const fakehost::StoredMessage& message, const char* tag);

// A stream of the storage of named properties: its tag, and its bytes in hex digits.
struct NamesStream {
    const char* tag;
    const char* bytes;
};
void expectNameStreams(const fakehost::StoredMessage& message,
                       const std::vector<NamesStream>& streams);

// Returns the tags that the message's entry stream assigns to a numeric name of its first property
// set (MS-OXMSG 2.2.3.1.2).
std::vector<uint32_t> tagsOf(const fakehost::StoredMessage& message, uint32_t namedId);

// Expects each of these streams with these bytes.
struct ExpectedStream {
    std::string path;
    fakehost::Bytes bytes;
};
void expectStreams(const fakehost::StoredMessage& message,
                   const std::vector<ExpectedStream>& streams);

// Expects that the item has this one entry, in addition to those of every message of its kind, and
// these named properties (in hex digits).
void expectOnlyEntry(const fakehost::ItemDocument& item, const fakehost::PropertyEntry& expected,
                     const char* names = "");

// Expects a failed request, without a property stream and with nothing left open.
void expectFailedRequest(const fakehost::Outcome& outcome);

#endif
