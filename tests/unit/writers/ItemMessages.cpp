#include "tests/unit/writers/ItemMessages.h"

#include <algorithm>
#include <cstdio>

using namespace fakehost;

namespace {

// Returns the kind of the item that a message was made from.
const ItemKind* kindOf(const StoredMessage& message) {
    const Bytes messageClass = message.stream("__substg1.0_001A001F");
    for (const ItemKind* kind :
         {&mailKind, &appointmentKind, &taskKind, &noteKind, &contactKind, &groupKind}) {
        if (messageClass == utf16(kind->messageClass)) {
            return kind;
        }
    }
    return nullptr;
}

std::string numbered(const char* prefix, uint32_t number) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%08X", number);
    return std::string(prefix) + digits;
}

} // namespace

ItemDocument& addCategories(ItemDocument& item, const char* element,
                            std::initializer_list<Text> names) {
    item.open(element);
    for (const Text& name : names) {
        item.element("category").attribute("OPFCategoryCopyName", name);
    }
    return item.close();
}

Bytes streamBegin(const ItemKind& kind, uint32_t recipients, uint32_t attachments) {
    return headerBytes(recipients, attachments) +
           hex("02 01 09 10  06 00 00 00  00 00 00 00 00 00 00 00"
               "1F 00 1A 00  06 00 00 00") +
           le64(kind.classSize) +
           hex("0B 00 1F 0E  06 00 00 00  00 00 00 00 00 00 00 00"
               "03 00 F7 0F  06 00 00 00  00 00 00 00 00 00 00 00"
               "03 00 F4 0F  06 00 00 00  02 00 00 00 00 00 00 00"
               "03 00 0D 34  06 00 00 00  79 0E 04 00 00 00 00 00"
               "03 00 DE 3F  06 00 00 00  B0 04 00 00 00 00 00 00") +
           hex(kind.leadingEntries);
}

std::vector<PropertyEntry> ownEntries(const StoredMessage& message) {
    const ItemKind* kind = kindOf(message);
    if (kind == nullptr) {
        ADD_FAILURE() << "a message of an unknown class";
        return {};
    }
    const std::vector<PropertyEntry> entries = message.entries();
    const size_t leading = requiredCount + hex(kind->leadingEntries).size() / 16;
    if (entries.size() < leading + kind->trailingTags.size()) {
        ADD_FAILURE() << "less than every " << kind->name
                      << " has: " << testing::PrintToString(entries);
        return {};
    }
    auto end = entries.end() - static_cast<long>(kind->trailingTags.size());
    std::vector<PropertyEntry> own(entries.begin() + static_cast<long>(leading), end);
    for (const uint32_t tag : kind->trailingTags) {
        const bool isNamed = tag <= 0xFFFF;
        EXPECT_EQ(isNamed ? tagsOf(message, tag) : std::vector{tag}, std::vector{end->tag});
        ++end;
    }
    return own;
}

Bytes terminated(std::u16string_view text) {
    return utf16(text) + hex("00 00");
}

std::string valueStream(uint32_t tag) {
    return numbered("__substg1.0_", tag);
}

std::string valueStream(uint32_t tag, uint32_t index) {
    return numbered((valueStream(tag) + "-").c_str(), index);
}

std::string recipientStorage(uint32_t number) {
    return numbered("__recip_version1.0_#", number);
}

std::string attachmentStorage(uint32_t number) {
    return numbered("__attach_version1.0_#", number);
}

std::string recipientValue(uint32_t number, uint32_t tag) {
    return recipientStorage(number) + "/" + valueStream(tag);
}

std::string attachmentValue(uint32_t number, uint32_t tag) {
    return attachmentStorage(number) + "/" + valueStream(tag);
}

void expectRecipient(const StoredMessage& message, uint32_t number,
                     const ExpectedRecipient& expected) {
    std::vector<PropertyEntry> entries = {entry(0x30000003, number),
                                          entry(0x0C150003, expected.type)};
    std::vector<std::string> names = {propertyStream};
    const std::pair<uint32_t, const std::optional<std::u16string>&> texts[] = {
        {0x3003001F, expected.address}, {0x3001001F, expected.name}};
    for (const auto& [tag, text] : texts) {
        if (text.has_value()) {
            entries.push_back(entry(tag, 2 * text->size() + 2));
            names.push_back(valueStream(tag));
            EXPECT_EQ(message.stream(recipientValue(number, tag)), utf16(*text));
        }
    }
    entries.insert(entries.end(), expected.further.begin(), expected.further.end());
    EXPECT_EQ(message.subEntries(recipientStorage(number)), entries);
    EXPECT_EQ(message.names(recipientStorage(number)), names);
}

uint32_t countStorages(const StoredMessage& message, const std::string& prefix) {
    const std::vector<std::string> names = message.names();
    return static_cast<uint32_t>(std::ranges::count_if(
        names, [&](const std::string& name) { return name.starts_with(prefix); }));
}

Bytes nameStream(const StoredMessage& message, const char* tag) {
    return message.stream(std::string("__nameid_version1.0/__substg1.0_") + tag);
}

void expectNameStreams(const StoredMessage& message, const std::vector<NamesStream>& streams) {
    for (const auto& [tag, bytes] : streams) {
        EXPECT_EQ(nameStream(message, tag), hex(bytes)) << tag;
    }
}

std::vector<uint32_t> tagsOf(const StoredMessage& message, uint32_t namedId) {
    const Bytes names = nameStream(message, "00030102");
    std::vector<uint32_t> tags;
    for (size_t at = 0; at + 8 <= names.size(); at += 8) {
        const uint32_t kindAndNumber = names.dword(at + 4);
        if (names.dword(at) == namedId && (kindAndNumber & 0xFFFF) == 6) {
            tags.push_back(0x80000000 + (kindAndNumber & 0xFFFF0000) + 0x001F);
        }
    }
    return tags;
}

void expectStreams(const StoredMessage& message, const std::vector<ExpectedStream>& streams) {
    for (const auto& [path, bytes] : streams) {
        EXPECT_EQ(message.stream(path), bytes) << path;
    }
}

void expectOnlyEntry(const ItemDocument& item, const PropertyEntry& expected, const char* names) {
    const StoredMessage message = writeItem(item);

    EXPECT_THAT(ownEntries(message), testing::ElementsAre(expected));
    EXPECT_EQ(nameStream(message, "00030102"), hex(names));
}

void expectFailedRequest(const Outcome& outcome) {
    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    EXPECT_FALSE(outcome.message.has(propertyStream));
    expectReleased(outcome);
}
