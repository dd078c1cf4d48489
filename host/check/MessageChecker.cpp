#include "host/check/MessageChecker.h"

#include <array>

#include "host/check/NamedPropertyChecker.h"
#include "host/check/PropertyValueChecker.h"

namespace olmhost {

namespace {

constexpr std::uint32_t maxParts = 2048; // recipients, and attachments, of one message

// Values of PidTagAttachMethod.
constexpr std::uint32_t attachByValue = 1;
constexpr std::uint32_t attachMessage = 5;
constexpr std::uint32_t attachObject = 6;

constexpr std::uint32_t attachDataStream = 0x37010102;
constexpr std::uint32_t attachDataStorage = 0x3701000D;

// {00020D0B-0000-0000-C000-000000000046}
constexpr std::array<unsigned char, 16> messageClass = {
    0x0B, 0x0D, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46};

} // namespace

void MessageChecker::check() {
    checkClassId();
    pending = {{rootEntry, MessageLevel::Top}};
    while (!pending.empty()) {
        const Pending current = pending.back();
        pending.pop_back();
        checkStorage(current);
    }
}

void MessageChecker::checkClassId() {
    ClassId expected{};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        expected[i] = std::byte{messageClass[i]};
    }
    if (compound.entries().record(rootEntry).classId != expected) {
        findings.add(FindingCode::MessageClassId, "/", "its class id is not that of a message");
    }
}

void MessageChecker::checkStorage(Pending current) {
    const StorageContents contents(compound, findings, current.storage, current.level);
    if (current.level == MessageLevel::Top) {
        checkNames(contents);
    }
    PropertyStreamChecker properties(compound, findings, facts, contents, current.storage,
                                     current.level);
    const bool isRead = properties.check();
    found.properties += properties.count();
    // What is missing or stray can be said only when all properties and values are known.
    if (isRead && contents.isComplete && properties.count() == properties.entries().size()) {
        PropertyValueChecker(compound, findings, contents, properties.entries()).check();
    }
    if (current.level == MessageLevel::Attachment) {
        checkAttachment(current.storage, contents, properties.attachMethod());
    }
    found.recipients += contents.recipients.size();
    found.attachments += contents.attachments.size();
    checkParts("recipient", current.storage, contents.recipients, MessageLevel::Recipient);
    checkParts("attachment", current.storage, contents.attachments, MessageLevel::Attachment);
}

void MessageChecker::checkNames(const StorageContents& contents) {
    if (!contents.nameStorage.has_value()) {
        findings.add(FindingCode::NamesMissing, "/",
                     "there is no storage with the names of its properties");
        return;
    }
    facts.namedCount = NamedPropertyChecker(compound, findings, *contents.nameStorage).check();
    found.namedProperties = facts.namedCount.value_or(0);
}

// The parts are numbered from 0 (MS-OXMSG 2.2.1, 2.2.2), and wait to be checked themselves.
void MessageChecker::checkParts(const char* noun, EntryId storage,
                                const std::vector<PartChild>& parts, MessageLevel level) {
    const std::string path = compound.entries().path(storage);
    if (parts.size() > maxParts) {
        findings.add(FindingCode::PartLimit, path,
                     "it has " + counted(parts.size(), noun) + ", more than " +
                         std::to_string(maxParts));
    }
    if (!parts.empty() && parts.back().number >= parts.size()) {
        findings.add(FindingCode::PartNumber, path,
                     "its " + counted(parts.size(), noun) + " are numbered up to " +
                         std::to_string(parts.back().number));
    }
    for (const PartChild& part : parts) {
        pending.push_back({part.id, level});
    }
}

// MS-OXMSG 2.2.2.
void MessageChecker::checkAttachment(EntryId storage, const StorageContents& contents,
                                     std::optional<std::uint32_t> method) {
    if (!method.has_value()) {
        return;
    }
    const ValueChild* object = contents.find(attachDataStorage);
    if (object != nullptr && !compound.entries().record(object->id).isStorage()) {
        object = nullptr;
    }
    const bool isStored = *method == attachMessage || *method == attachObject;
    const bool isMissing = *method == attachByValue ? contents.find(attachDataStream) == nullptr
                                                    : isStored && object == nullptr;
    if (isMissing) {
        findings.add(FindingCode::AttachmentData, compound.entries().path(storage),
                     "its attach method is " + std::to_string(*method) +
                         ", and it has no data of that kind");
    }
    if (*method == attachMessage && object != nullptr) {
        ++found.embeddedMessages;
        pending.push_back({object->id, MessageLevel::Embedded});
    }
}

} // namespace olmhost
