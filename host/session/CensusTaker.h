#ifndef OLMKIT_HOST_SESSION_CENSUSTAKER_H
#define OLMKIT_HOST_SESSION_CENSUSTAKER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "host/archive/ArchiveFile.h"
#include "host/session/Census.h"
#include "host/session/ItemCounter.h"

namespace olmhost {

// Takes the census of an archive while the module lists it.
//
// It counts while the module reads a document, so that a document is parsed once. What the module
// doesn't read to its end, or doesn't open at all, is read here; every document to its last byte,
// so that no item is lost to damage unnoticed.
class CensusTaker {
public:
    // `file` is borrowed.
    explicit CensusTaker(ArchiveFile& file) : file(file) {}

    // Starts and stops counting what is read.
    void watch() { file.keepWatch(&counter); }
    void unwatch() { file.keepWatch(nullptr); }

    // The module has ended an entry, for which it sent `rows` rows. Entries come in their order.
    void endEntry(std::uint64_t entry, std::uint64_t rows);

    const Census& census() const { return taken; }

    // See ItemCounter: the current document.
    std::optional<ItemKind> documentKind() const { return counter.kind(); }
    void setAttachmentCallback(AttachmentCallback callback) {
        counter.onAttachment = std::move(callback);
    }

private:
    void endDocument(std::uint64_t entry, std::uint64_t rows);
    bool isUnfinished() const;
    void read(std::uint64_t entry);
    void note(std::uint64_t entry, std::uint64_t rows, bool wasOpened);
    void describeMismatch(DocumentNote& note, bool wasOpened) const;
    void addStrangers(std::string& text) const;
    const EntryFault* faultOf(std::uint64_t entry) const;

    ArchiveFile& file;
    ItemCounter counter;
    Census taken;
    std::size_t faultsBefore = 0; // the current entry
};

} // namespace olmhost

#endif
