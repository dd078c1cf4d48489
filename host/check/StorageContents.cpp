#include "host/check/StorageContents.h"

#include <algorithm>
#include <tuple>

namespace olmhost {

namespace {

// The storage of an embedded message or of another program's object.
constexpr std::uint32_t objectOfAttachment = 0x3701000D;

} // namespace

StorageContents::StorageContents(const CompoundChecker& compound, FindingList& findings,
                                 EntryId storage, MessageLevel level) {
    const CheckedDirectory& directory = compound.entries();
    std::uint32_t count = 0;
    for (EntryId id = directory.firstMember(storage); id != noEntry;
         id = directory.nextMember(id)) {
        if (++count > maxLookedAt) {
            findings.add(FindingCode::CheckLimit, directory.path(storage),
                         "it has more than " + std::to_string(maxLookedAt) +
                             " streams; only the first ones were checked");
            isComplete = false;
            break;
        }
        take(compound, findings, id, level);
    }
    std::ranges::sort(recipients, {}, &PartChild::number);
    std::ranges::sort(attachments, {}, &PartChild::number);
    std::ranges::sort(values, [](const ValueChild& left, const ValueChild& right) {
        return std::tie(left.tag, left.isListValue, left.index) <
               std::tie(right.tag, right.isListValue, right.index);
    });
}

const ValueChild* StorageContents::find(std::uint32_t tag) const {
    const auto found = std::ranges::lower_bound(values, tag, {}, &ValueChild::tag);
    return found == values.end() || found->tag != tag || found->isListValue ? nullptr : &*found;
}

void StorageContents::take(const CompoundChecker& compound, FindingList& findings, EntryId id,
                           MessageLevel level) {
    using Kind = MessageChild::Kind;
    const DirectoryRecord record = compound.entries().record(id);
    const MessageChild child(record.name());
    const auto add = [&](FindingCode code, std::string text) {
        findings.add(code, compound.entries().path(id), std::move(text));
    };
    if (child.hasLowercaseDigits && child.kind != Kind::Other) {
        add(FindingCode::ChildNameCase, "its name has lowercase hexadecimal digits");
    }
    const bool isValue = child.kind == Kind::Value || child.kind == Kind::ListValue;
    const bool isObject = child.kind == Kind::Value && child.number == objectOfAttachment &&
                          level == MessageLevel::Attachment;
    const bool shouldBeStream = child.kind == Kind::PropertyStream || (isValue && !isObject);
    if (child.kind != Kind::Other && shouldBeStream != record.isStream()) {
        add(FindingCode::ChildKind, shouldBeStream ? "it is not a stream" : "it is not a storage");
    } else if (child.kind == Kind::PropertyStream) {
        propertyStream = id;
    } else if (isValue) {
        values.push_back({child.number, child.kind == Kind::ListValue, child.index, id});
    } else if (child.kind == Kind::NameStorage && level == MessageLevel::Embedded) {
        add(FindingCode::NamesEmbedded, "an embedded message has names of its own, which readers "
                                        "take from the whole message");
    } else if (!takeStorage(child, id, level)) {
        add(FindingCode::ChildName, "its name has no meaning in this storage");
    }
}

// False when a storage of this level has no such member.
bool StorageContents::takeStorage(const MessageChild& child, EntryId id, MessageLevel level) {
    using Kind = MessageChild::Kind;
    if (child.kind == Kind::NameStorage && level == MessageLevel::Top) {
        nameStorage = id;
    } else if (child.kind == Kind::Recipient && isMessage(level)) {
        recipients.push_back({child.number, id});
    } else if (child.kind == Kind::Attachment && isMessage(level)) {
        attachments.push_back({child.number, id});
    } else {
        return false;
    }
    return true;
}

} // namespace olmhost
