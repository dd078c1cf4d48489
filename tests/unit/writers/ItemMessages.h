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

// What the tests of all writers share: parts of items, and the parts that the messages of every
// kind have.

inline constexpr const char* propertyStream = "__properties_version1.0";

// Attributes of a person.
inline constexpr const char* addressAttribute = "OPFContactEmailAddressAddress";
inline constexpr const char* nameAttribute = "OPFContactEmailAddressName";
inline constexpr const char* typeAttribute = "OPFContactEmailAddressType";

// Times of an entry: 100-nanosecond units since 1601, less one second.
inline constexpr uint64_t time1970 = 116444735990000000; // 1970-01-01T00:00:00
inline constexpr uint64_t timeOfOneSecond = time1970 + 10'000'000;
inline constexpr uint64_t timeIn2018 = 131740151470000000; // 2018-06-21T00:39:08

// The entries that every message has first.
inline constexpr size_t requiredCount = 7;

// Adds a category list as an element of that name.
fakehost::ItemDocument& addCategories(fakehost::ItemDocument& item, const char* element,
                                      std::initializer_list<fakehost::Text> names);

// The property stream of every message of that kind as far as it is always the same: the header,
// the required entries and the kind's own.
fakehost::Bytes streamBegin(const ItemKind& kind, uint32_t recipients = 0,
                            uint32_t attachments = 0);

// The entries that come from the item's elements: neither those that every message of its kind
// begins with nor those that it ends with, which have to be there.
std::vector<fakehost::PropertyEntry> ownEntries(const fakehost::StoredMessage& message);

// A text as the streams that want a terminator have it.
fakehost::Bytes terminated(std::u16string_view text);

// Paths: of a property's value, of value `index` of a multi-valued property, of a recipient's or
// an attachment's storage, and of a value in one of those.
std::string valueStream(uint32_t tag);
std::string valueStream(uint32_t tag, uint32_t index);
std::string recipientStorage(uint32_t number);
std::string attachmentStorage(uint32_t number);
std::string recipientValue(uint32_t number, uint32_t tag);
std::string attachmentValue(uint32_t number, uint32_t tag);

// The storage of recipient `number` holds its number and type, the address and the name with their
// streams as far as they are given, and then `further`; and nothing else.
struct ExpectedRecipient {
    uint64_t type = 1;
    std::optional<std::u16string> address = std::nullopt;
    std::optional<std::u16string> name = std::nullopt;
    std::vector<fakehost::PropertyEntry> further = {};
};
void expectRecipient(const fakehost::StoredMessage& message, uint32_t number,
                     const ExpectedRecipient& expected);

// How many storages directly below the root have a name that begins so.
uint32_t countStorages(const fakehost::StoredMessage& message, const std::string& prefix);

// A stream of the storage of named properties; the tag in eight digits.
fakehost::Bytes nameStream(const fakehost::StoredMessage& message, const char* tag);

// Streams of the storage of named properties: tags, and bytes in hex digits.
struct NamesStream {
    const char* tag;
    const char* bytes;
};
void expectNameStreams(const fakehost::StoredMessage& message,
                       const std::vector<NamesStream>& streams);

// The tags that the message's own stream of named properties gives to a numeric name of its first
// property set; see nameStream().
std::vector<uint32_t> tagsOf(const fakehost::StoredMessage& message, uint32_t namedId);

// Each of these streams is there with these bytes.
struct ExpectedStream {
    std::string path;
    fakehost::Bytes bytes;
};
void expectStreams(const fakehost::StoredMessage& message,
                   const std::vector<ExpectedStream>& streams);

// The item comes to that one entry, besides what every message of its kind has, and to these named
// properties (hex digits).
void expectOnlyEntry(const fakehost::ItemDocument& item, const fakehost::PropertyEntry& expected,
                     const char* names = "");

// The request failed, with no property stream and nothing left open.
void expectFailedRequest(const fakehost::Outcome& outcome);

#endif
