#include "host/check/PropertyStreamChecker.h"

#include <array>
#include <span>

#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

constexpr std::size_t entrySize = 16; // bytes, of the property stream

constexpr std::uint32_t storeSupportMask = 0x340D0003;
constexpr std::uint32_t storeIsUnicode = 0x00040000; // in its value
constexpr std::uint32_t attachMethodTag = 0x37050003;

// Readable, writable, mandatory.
constexpr std::uint32_t knownFlags = 7;

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

} // namespace

PropertyStreamChecker::PropertyStreamChecker(CompoundChecker& compound, FindingList& findings,
                                             MessageFacts& facts, const StorageContents& contents,
                                             EntryId storage, MessageLevel level)
    : compound(compound), findings(findings), facts(facts), contents(contents), level(level),
      path(compound.entries().path(contents.propertyStream.value_or(storage))) {}

bool PropertyStreamChecker::check() {
    if (!contents.propertyStream.has_value()) {
        add(FindingCode::PropertyStreamMissing, "it has no property stream");
        return false;
    }
    if (!compound.isReadable(*contents.propertyStream)) {
        return false; // its chain is reported already
    }
    readEntries();
    checkTextKind();
    return true;
}

void PropertyStreamChecker::add(FindingCode code, std::string text) {
    findings.add(code, path, std::move(text));
}

void PropertyStreamChecker::add(FindingCode code, std::uint32_t tag, const std::string& text) {
    add(code, "property " + hexText(tag) + " " + text);
}

void PropertyStreamChecker::readEntries() {
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
    if (entryCount > held.size()) {
        add(FindingCode::CheckLimit,
            "it has " + std::to_string(entryCount) + " properties; their values were not checked");
    }
}

void PropertyStreamChecker::checkHeader(StreamCursor& cursor) {
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

void PropertyStreamChecker::checkCount(FindingCode code, const char* noun, std::uint32_t stated,
                                       std::size_t found) {
    if (contents.isComplete && stated != found) {
        add(code,
            "it counts " + counted(stated, noun) + ", and there are " + std::to_string(found));
    }
}

void PropertyStreamChecker::checkNextId(FindingCode code, const char* noun, std::uint32_t nextId,
                                        const std::vector<PartChild>& parts) {
    if (!parts.empty() && nextId <= parts.back().number) {
        add(code, "the number for the next " + std::string(noun) + " is " + std::to_string(nextId) +
                      ", and there is one with number " + std::to_string(parts.back().number));
    }
}

void PropertyStreamChecker::takeEntry(ByteSpan bytes) {
    FieldReader fields(bytes);
    const auto tag = fields.number<std::uint32_t>();
    const auto flags = fields.number<std::uint32_t>();
    const auto value = fields.number<std::uint64_t>();
    const auto type = static_cast<std::uint16_t>(tag);
    const bool isList = (type & multipleValues) != 0;
    const auto id = static_cast<std::uint16_t>(tag >> 16);
    const auto order = static_cast<std::uint32_t>(entryCount++);
    if (held.size() < StorageContents::maxLookedAt) {
        held.push_back({tag, static_cast<std::uint32_t>(value), order});
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
    if (row->isInEntry && !isList) {
        checkFixedValue(*row, tag, value);
        takeFact(tag, value);
    }
}

void PropertyStreamChecker::takeFact(std::uint32_t tag, std::uint64_t value) {
    const auto number = static_cast<std::uint32_t>(value);
    if (tag == attachMethodTag && level == MessageLevel::Attachment) {
        method = number;
    }
    if (tag == storeSupportMask && level == MessageLevel::Top) {
        facts.isUnicode = (number & storeIsUnicode) != 0;
    }
}

// MS-OXMSG 2.4.2.1.
void PropertyStreamChecker::checkFixedValue(const TypeRow& row, std::uint32_t tag,
                                            std::uint64_t value) {
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
void PropertyStreamChecker::checkTextKind() {
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

} // namespace olmhost
