#include "host/check/PropertyChecker.h"

#include <algorithm>
#include <array>

#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

constexpr std::size_t entrySize = 16; // bytes, of the property stream

constexpr std::uint32_t storeSupportMask = 0x340D0003;
constexpr std::uint32_t storeIsUnicode = 0x00040000; // in its value
constexpr std::uint32_t attachMethodTag = 0x37050003;

// Readable, writable, mandatory.
constexpr std::uint32_t knownFlags = 7;

constexpr std::uint32_t sizeOfObject = 0xFFFFFFFF;

// Bytes that the size of a text counts without being in its stream.
constexpr std::uint32_t wideTerminator = 2;
constexpr std::uint32_t narrowTerminator = 1;

// Bytes of one record in the length stream of a list.
constexpr std::size_t textRecordSize = 4;
constexpr std::size_t binaryRecordSize = 8;

constexpr std::uint16_t firstNameId = 0x8000;
constexpr std::uint16_t noId = 0xFFFF;

// MS-OXMSG 2.4.1.1 to 2.4.1.3; bytes.
constexpr std::size_t headerSizeOf(MessageLevel level) {
    switch (level) {
    case MessageLevel::Top:
        return 32;
    case MessageLevel::Embedded:
        return 24;
    case MessageLevel::Recipient:
    case MessageLevel::Attachment:
        break;
    }
    return 8;
}

constexpr bool isList(std::uint16_t type) {
    return (type & multipleValues) != 0;
}

} // namespace

PropertyChecker::PropertyChecker(CompoundChecker& compound, FindingList& findings,
                                 MessageFacts& facts, const StorageContents& contents,
                                 EntryId storage, MessageLevel level)
    : compound(compound), findings(findings), facts(facts), contents(contents), storage(storage),
      level(level), path(compound.entries().path(contents.propertyStream.value_or(storage))) {}

void PropertyChecker::check() {
    if (!contents.propertyStream.has_value()) {
        add(FindingCode::PropertyStreamMissing, "it has no property stream");
        return;
    }
    if (!compound.isReadable(*contents.propertyStream)) {
        return; // its chain is reported already
    }
    readEntries();
    checkTextKind();
    if (entryCount > entries.size() || !contents.isComplete) {
        return; // what is there twice, missing or stray can't be said
    }
    std::ranges::sort(entries, [](const PropertyEntry& left, const PropertyEntry& right) {
        return std::tie(left.tag, left.order) < std::tie(right.tag, right.order);
    });
    checkTwice();
    checkValues();
}

void PropertyChecker::add(FindingCode code, std::string text) {
    findings.add(code, path, std::move(text));
}

void PropertyChecker::add(FindingCode code, std::uint32_t tag, const std::string& text) {
    add(code, "property " + hexText(tag) + " " + text);
}

void PropertyChecker::readEntries() {
    StreamCursor cursor(compound, *contents.propertyStream);
    const std::size_t header = headerSizeOf(level);
    if (cursor.remaining() < header || (cursor.remaining() - header) % entrySize != 0) {
        add(FindingCode::PropertyStreamSize, "it has " + counted(cursor.remaining(), "byte") +
                                                 ", not " + std::to_string(header) +
                                                 " and 16 for each property");
    }
    if (cursor.remaining() < header) {
        return;
    }
    checkHeader(cursor);
    std::array<std::byte, entrySize> bytes{};
    while (cursor.read(bytes)) {
        takeEntry(bytes);
    }
    if (entryCount > entries.size()) {
        add(FindingCode::CheckLimit,
            "it has " + std::to_string(entryCount) + " properties; their values were not checked");
    }
}

void PropertyChecker::checkHeader(StreamCursor& cursor) {
    std::array<std::byte, 32> bytes{};
    const auto header = std::span(bytes).first(headerSizeOf(level));
    cursor.read(header);
    FieldReader fields(header);
    bool isReservedZero = fields.number<std::uint64_t>() == 0;
    if (isMessage(level)) {
        const auto nextRecipient = fields.number<std::uint32_t>();
        const auto nextAttachment = fields.number<std::uint32_t>();
        const auto recipients = fields.number<std::uint32_t>();
        const auto attachments = fields.number<std::uint32_t>();
        checkCount(FindingCode::RecipientCount, "recipient", recipients,
                   contents.recipients.size());
        checkCount(FindingCode::AttachmentCount, "attachment", attachments,
                   contents.attachments.size());
        checkNextId(FindingCode::RecipientNextId, "recipient", nextRecipient, contents.recipients);
        checkNextId(FindingCode::AttachmentNextId, "attachment", nextAttachment,
                    contents.attachments);
    }
    while (fields.remaining() > 0) {
        isReservedZero = fields.number<std::uint64_t>() == 0 && isReservedZero;
    }
    if (!isReservedZero) {
        add(FindingCode::PropertyStreamReserved, "the reserved bytes of its header are not zero");
    }
}

void PropertyChecker::checkCount(FindingCode code, const char* noun, std::uint32_t stated,
                                 std::size_t found) {
    if (contents.isComplete && stated != found) {
        add(code,
            "it counts " + counted(stated, noun) + ", and there are " + std::to_string(found));
    }
}

void PropertyChecker::checkNextId(FindingCode code, const char* noun, std::uint32_t nextId,
                                  const std::vector<PartChild>& parts) {
    if (!parts.empty() && nextId <= parts.back().number) {
        add(code, "the number for the next " + std::string(noun) + " is " + std::to_string(nextId) +
                      ", and there is one with number " + std::to_string(parts.back().number));
    }
}

void PropertyChecker::takeEntry(ByteSpan bytes) {
    FieldReader fields(bytes);
    const auto tag = fields.number<std::uint32_t>();
    const auto flags = fields.number<std::uint32_t>();
    const auto value = fields.number<std::uint64_t>();
    const auto type = static_cast<std::uint16_t>(tag);
    const auto id = static_cast<std::uint16_t>(tag >> 16);
    const auto order = static_cast<std::uint32_t>(entryCount++);
    if (entries.size() < StorageContents::maxLookedAt) {
        entries.push_back({tag, static_cast<std::uint32_t>(value), order});
    }
    if ((flags & ~knownFlags) != 0) {
        add(FindingCode::PropertyFlags, tag, "has unknown flags: " + hexText(flags));
    }
    if (id >= firstNameId && facts.namedCount.has_value() &&
        (id == noId || std::uint32_t{id} - firstNameId >= *facts.namedCount)) {
        add(FindingCode::NamedIdUnknown, tag, "has no name");
    }
    const TypeRow* row = findType(type);
    if (row == nullptr) {
        add(FindingCode::PropertyType, tag, "has a type that no message holds");
        return;
    }
    wideTexts += row->type == PtypString ? 1 : 0;
    narrowTexts += row->type == PtypString8 ? 1 : 0;
    if (row->isInEntry && !isList(type)) {
        checkFixedValue(*row, tag, value);
        takeFact(tag, value);
    }
}

void PropertyChecker::takeFact(std::uint32_t tag, std::uint64_t value) {
    const auto number = static_cast<std::uint32_t>(value);
    if (tag == attachMethodTag && level == MessageLevel::Attachment) {
        method = number;
    }
    if (tag == storeSupportMask && level == MessageLevel::Top) {
        facts.isUnicode = (number & storeIsUnicode) != 0;
    }
}

// MS-OXMSG 2.4.2.1.
void PropertyChecker::checkFixedValue(const TypeRow& row, std::uint32_t tag, std::uint64_t value) {
    if (row.size < sizeof value && value >> (8 * row.size) != 0) {
        add(FindingCode::ValueUnusedBytes, tag,
            "has a value of " + counted(row.size, "byte") + ", and the others are not zero");
    }
    if (row.type == PtypBoolean && (value & 0xFFFF) > 1) {
        add(FindingCode::ValueBoolean, tag,
            "is neither true nor false: " + hexText(static_cast<std::uint32_t>(value & 0xFFFF)));
    }
}

// MS-OXMSG 2.1.1.1: all texts of a message are of one kind.
void PropertyChecker::checkTextKind() {
    if (!facts.isUnicode.has_value()) {
        return;
    }
    const std::uint64_t others = *facts.isUnicode ? narrowTexts : wideTexts;
    if (others > 0) {
        add(FindingCode::TextKind,
            "it has " + counted(others, "text") + " of " +
                (*facts.isUnicode ? "8-bit characters, and the message says that all are Unicode"
                                  : "Unicode, and the message says that there are none"));
    }
}

void PropertyChecker::checkTwice() {
    for (std::size_t i = 1; i < entries.size(); ++i) {
        const std::uint32_t tag = entries[i].tag;
        const std::uint32_t before = entries[i - 1].tag;
        const bool isFirstPair = i == 1 || entries[i - 2].tag != tag;
        if (tag == before && isFirstPair) {
            add(FindingCode::PropertyTwice, tag, "is there more than once");
        } else if (tag != before && tag >> 16 == before >> 16) {
            add(FindingCode::PropertyIdTwice, tag, "is there as " + hexText(before) + ", too");
        }
    }
}

// Goes through properties and values side by side; both are in the order of their tags. Of a
// property that is there more than once the last entry counts, since its value came last.
void PropertyChecker::checkValues() {
    std::size_t first = 0;
    const Values all = contents.values;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const PropertyEntry& entry = entries[i];
        if (i + 1 < entries.size() && entries[i + 1].tag == entry.tag) {
            continue;
        }
        for (; first < all.size() && all[first].tag < entry.tag; ++first) {
            addStray(all[first]);
        }
        const std::size_t start = first;
        while (first < all.size() && all[first].tag == entry.tag) {
            ++first;
        }
        checkProperty(entry, all.subspan(start, first - start));
    }
    for (; first < all.size(); ++first) {
        addStray(all[first]);
    }
}

// `values` are the streams that have the property's tag in their names.
void PropertyChecker::checkProperty(const PropertyEntry& entry, Values values) {
    const TypeRow* row = findType(entry.type());
    if (row == nullptr) {
        return;
    }
    if (row->isInEntry && !isList(entry.type())) {
        if (!values.empty()) {
            add(FindingCode::ValueOfFixedType, entry.tag,
                "has its value in its entry, and a stream, too");
        }
        return;
    }
    if (values.empty() || values.front().isListValue) {
        add(FindingCode::ValueMissing, entry.tag, "has no stream");
        return;
    }
    checkStream(entry, *row, values.front());
    if (isList(entry.type()) && row->size == 0) {
        checkList(entry, *row, values);
    } else {
        std::ranges::for_each(values.subspan(1), [&](const ValueChild& value) { addStray(value); });
    }
}

void PropertyChecker::checkStream(const PropertyEntry& entry, const TypeRow& row,
                                  const ValueChild& stream) {
    if (row.type == PtypObject) {
        checkObject(entry, stream);
        return;
    }
    const std::uint64_t size = compound.streamSize(stream.id);
    const bool isSingle = !isList(entry.type());
    std::uint64_t stated = size;
    if (isSingle && row.type == PtypString) {
        stated += wideTerminator;
    } else if (isSingle && row.type == PtypString8) {
        stated += narrowTerminator;
    }
    if (entry.size != stated) {
        add(FindingCode::ValueSize, entry.tag,
            "says that its size is " + std::to_string(entry.size) + ", and its stream has " +
                counted(size, "byte"));
    }
    if (isSingle && row.type == PtypString && size % 2 != 0) {
        add(FindingCode::TextSize, entry.tag, "ends in half a character");
    }
    if (isSingle && row.type == PtypGuid && size != row.size) {
        add(FindingCode::GuidSize, entry.tag, "is a GUID of " + counted(size, "byte"));
    }
    if (!isSingle && row.size != 0 && size % row.size != 0) {
        add(FindingCode::ListSize, entry.tag,
            "has " + counted(size, "byte") + " of values with " + std::to_string(row.size) +
                " each");
    }
}

// Of an object the entry doesn't say the size (MS-OXMSG 2.4.2.2).
void PropertyChecker::checkObject(const PropertyEntry& entry, const ValueChild& value) {
    if (entry.size != sizeOfObject) {
        add(FindingCode::ObjectSize, entry.tag,
            "is an object and says that its size is " + std::to_string(entry.size));
    }
    if (compound.entries().record(value.id).isStream()) {
        add(FindingCode::ChildKind, entry.tag, "is an object in a stream, not in a storage");
    }
}

// A stream with the size of each value, and a stream for each (MS-OXMSG 2.1.4.2).
void PropertyChecker::checkList(const PropertyEntry& entry, const TypeRow& row, Values values) {
    const ValueChild& lengths = values.front();
    Values streams = values.subspan(1);
    if (!compound.isReadable(lengths.id)) {
        return; // its chain is reported already
    }
    StreamCursor cursor(compound, lengths.id);
    std::array<std::byte, binaryRecordSize> bytes{};
    const auto record =
        std::span(bytes).first(row.type == PtypBinary ? binaryRecordSize : textRecordSize);
    std::uint64_t missing = 0;
    for (std::uint32_t index = 0; cursor.read(record); ++index) {
        if (streams.empty() || streams.front().index != index) {
            ++missing;
            continue;
        }
        checkListValue(entry, index, FieldReader(record).number<std::uint32_t>(), streams.front());
        streams = streams.subspan(1);
    }
    if (missing > 0) {
        add(FindingCode::ListValueMissing, entry.tag,
            "has no stream for " + counted(missing, "value"));
    }
    if (cursor.remaining() > 0) {
        add(FindingCode::ListSize, entry.tag, "has a length stream that ends in half a length");
    }
    for (const ValueChild& value : streams) {
        findings.add(FindingCode::ListValueStray, compound.entries().path(value.id),
                     "the property's list has no such value");
    }
}

void PropertyChecker::checkListValue(const PropertyEntry& entry, std::uint32_t index,
                                     std::uint32_t size, const ValueChild& value) {
    const std::uint64_t found = compound.streamSize(value.id);
    if (found != size) {
        add(FindingCode::ListValueSize, entry.tag,
            "says that value " + std::to_string(index) + " has " + counted(size, "byte") +
                ", and its stream has " + std::to_string(found));
    }
    if (compound.isReadable(value.id) && !endsInZero(entry, value.id)) {
        add(FindingCode::ListTextEnd, entry.tag,
            "has value " + std::to_string(index) + " without the zero that ends it");
    }
}

void PropertyChecker::addStray(const ValueChild& value) {
    findings.add(FindingCode::ValueStray, compound.entries().path(value.id),
                 "no property has this value");
}

// Whether a text in a list has its terminator; true of a binary value.
bool PropertyChecker::endsInZero(const PropertyEntry& entry, EntryId stream) {
    const bool isWide = entry.type() == (PtypString | multipleValues);
    if (!isWide && entry.type() != (PtypString8 | multipleValues)) {
        return true;
    }
    std::array<std::byte, wideTerminator> end{};
    const auto place = std::span(end).first(isWide ? wideTerminator : narrowTerminator);
    StreamCursor cursor(compound, stream);
    return cursor.remaining() >= place.size() && cursor.skip(cursor.remaining() - place.size()) &&
           cursor.read(place) && end == std::array<std::byte, wideTerminator>{};
}

} // namespace olmhost
