#include "host/session/AttachmentLedger.h"

#include <algorithm>

#include "host/message/MessageFormat.h"

namespace olmhost {

namespace {

// Two streams of an attachment: PidTagAttachDataBinary and PidTagAttachLongFilename.
constexpr std::u16string_view dataStream = u"__substg1.0_37010102";
constexpr std::u16string_view nameStream = u"__substg1.0_3704001F";

constexpr std::size_t maxNameBytes = 2 * AttachmentAccount::maxName;

} // namespace

void AttachmentLedger::storageMade(EntryId id, std::u16string_view name) {
    if (name.starts_with(attachmentStart)) {
        attachments.push_back(
            {id, reading.members.size(), {}, DataWatcher(*this, attachments.size())});
    }
}

StreamWatcher* AttachmentLedger::streamMade(EntryId parent, std::u16string_view name) {
    const bool isData = name == dataStream;
    Attachment* attachment = isData || name == nameStream ? find(parent) : nullptr;
    if (attachment == nullptr) {
        return nullptr;
    }
    if (!isData) {
        return &attachment->name;
    }
    attachment->hasData = true;
    return &attachment->data;
}

void AttachmentLedger::rethrow() const {
    if (thrown != nullptr) {
        std::rethrow_exception(thrown);
    }
}

std::vector<AttachmentAccount> AttachmentLedger::take() {
    std::vector<AttachmentAccount> accounts;
    accounts.reserve(attachments.size());
    for (auto place = attachments.begin(); place != attachments.end(); ++place) {
        const auto next = std::next(place);
        const std::size_t membersWith =
            next == attachments.end() ? reading.members.size() : next->membersBefore;
        AttachmentAccount& account = accounts.emplace_back();
        account.name = place->name.text();
        if (place->membersBefore < membersWith) {
            account.member = place->membersBefore;
        }
        if (place->hasData) {
            account.size = place->data.size();
        }
    }
    return accounts;
}

// Returns the attachment of that storage, which is nearly always the last one.
AttachmentLedger::Attachment* AttachmentLedger::find(EntryId storage) {
    const auto found =
        std::ranges::find(attachments.rbegin(), attachments.rend(), storage, &Attachment::storage);
    return found == attachments.rend() ? nullptr : &*found;
}

void AttachmentLedger::pass(std::size_t attachment, ByteSpan bytes) {
    if (!listener) {
        return;
    }
    try {
        listener(attachment, bytes);
    } catch (...) {
        thrown = std::current_exception();
        throw;
    }
}

void AttachmentLedger::NameWatcher::wrote(ByteSpan bytes) {
    const std::size_t room = maxNameBytes - units.size();
    for (const std::byte byte : bytes.first(std::min(bytes.size(), room))) {
        units += static_cast<char>(byte);
    }
}

std::u16string AttachmentLedger::NameWatcher::text() const {
    std::u16string text;
    text.reserve(units.size() / 2);
    for (std::size_t place = 0; place + 1 < units.size(); place += 2) {
        const auto low = static_cast<unsigned char>(units[place]);
        const auto high = static_cast<unsigned char>(units[place + 1]);
        text += static_cast<char16_t>(low | high << 8);
    }
    return text;
}

void AttachmentLedger::DataWatcher::wrote(ByteSpan bytes) {
    count += bytes.size();
    ledger.pass(attachment, bytes);
}

} // namespace olmhost
