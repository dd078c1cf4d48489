#ifndef OLMKIT_HOST_SESSION_ATTACHMENTLEDGER_H
#define OLMKIT_HOST_SESSION_ATTACHMENTLEDGER_H

#include <deque>
#include <exception>
#include <vector>

#include "host/archive/ReadAccount.h"
#include "host/compound/CompoundWatcher.h"
#include "host/session/AttachmentAccount.h"

namespace olmhost {

// Keeps account of the attachments of one message, by watching its compound file.
//
// The entry that an attachment was read from is the one that was requested while its storage was
// the last one made; when none was, the document names none.
class AttachmentLedger final : public CompoundWatcher {
public:
    // Both are borrowed. `reading` is filled while the message is written; `listener` may be empty.
    AttachmentLedger(const ReadAccount& reading, const AttachmentBytes& listener)
        : reading(reading), listener(listener) {}

    void storageMade(EntryId id, std::u16string_view name) override;
    StreamWatcher* streamMade(EntryId parent, std::u16string_view name) override;

    // Throws what the listener threw.
    void rethrow() const;

    // Returns the accounts, in the order of the attachments. Call it once, after the message.
    std::vector<AttachmentAccount> take();

private:
    // The bytes of an attachment's long file name.
    class NameWatcher final : public StreamWatcher {
    public:
        void wrote(ByteSpan bytes) override;
        std::u16string text() const;

    private:
        std::string units; // bytes of UTF-16, low byte first
    };

    // The data of an attachment.
    class DataWatcher final : public StreamWatcher {
    public:
        DataWatcher(AttachmentLedger& ledger, std::size_t attachment)
            : ledger(ledger), attachment(attachment) {}
        void wrote(ByteSpan bytes) override;

        std::uint64_t size() const { return count; }

    private:
        AttachmentLedger& ledger;
        std::size_t attachment;
        std::uint64_t count = 0;
    };

    struct Attachment {
        EntryId storage;
        std::size_t membersBefore; // requested before it
        NameWatcher name;
        DataWatcher data;
        bool hasData = false;
    };

    Attachment* find(EntryId storage);
    void pass(std::size_t attachment, ByteSpan bytes);

    const ReadAccount& reading;
    const AttachmentBytes& listener;
    std::deque<Attachment> attachments; // a deque, since elements are pointed to
    std::exception_ptr thrown;
};

} // namespace olmhost

#endif
