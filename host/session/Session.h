#ifndef OLMKIT_HOST_SESSION_SESSION_H
#define OLMKIT_HOST_SESSION_SESSION_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/Census.h"
#include "host/session/Column.h"
#include "host/session/Extraction.h"
#include "host/session/OpenOutcome.h"
#include "host/session/Row.h"
#include "host/session/SessionOptions.h"
#include "host/stream/ByteSink.h"
#include "host/stream/EntryFault.h"
#include "host/stream/Export.h"

namespace olmhost {

// What an archive's directory says of one entry.
struct EntrySize {
    std::uint64_t size = 0;       // bytes, uncompressed
    std::uint64_t packedSize = 0; // bytes, as they lie in the archive
    std::uint32_t checksum = 0;   // CRC-32 of the uncompressed bytes
    bool isEncrypted = false;
};

// What a row callback answers.
enum class RowAnswer {
    Continue,
    Pause, // after the entry at hand, whose other rows still come
};

using RowCallback = std::function<RowAnswer(const Row&)>;

// One open archive, its rows and its extractions.
//
// Order of calls: open() once; then list() until it says that the archive is at its end, and
// extract() and extractAt() at any time outside a callback. Nothing is kept of a row, so memory
// grows only by what the module keeps to find an item again.
//
// A session is used by one thread at a time; any number of sessions may run at once. What a
// callback throws leaves the function that was given the callback, and the session goes on as
// after a pause or a cancelled extraction. Except for that, only std::bad_alloc is thrown.
class OLMHOST_EXPORT Session {
public:
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    // Opens the archive at `path` (bytes as the file system takes them). After anything but Done
    // the session can do nothing more.
    [[nodiscard]] OpenOutcome open(const std::string& path, const SessionOptions& options = {});

    // Opens the archive that `first` has open, for another thread, at next to no cost: the
    // archive's directory is shared, and read no more. Neither session has to outlive the other;
    // `first` must not be in use during the call.
    [[nodiscard]] OpenOutcome openBeside(const Session& first);

    // The fourteen columns as the module defined them.
    const std::vector<Column>& columns() const;

    // Rows of the archive's directory, and the name of one: UTF-8, empty past the last.
    std::uint64_t entryCount() const;
    std::string_view entryName(std::uint64_t entry) const;

    // What the directory says of a row, all 0 past the last; and the first file of a name, as an
    // item tells it for an attachment.
    EntrySize entrySize(std::uint64_t entry) const;
    std::optional<std::uint64_t> findEntry(std::string_view name) const;

    // Bytes of the archive's file.
    std::uint64_t archiveSize() const;

    // Reads a row's data to their end. What is wrong with them, or keeps them from being read,
    // becomes a fault.
    void check(std::uint64_t entry);

    // Delivers rows, from where the last call ended. True when the archive is at its end, false
    // after a pause. An entry that can't be read costs itself alone: see faults().
    bool list(const RowCallback& callback);

    // Items delivered so far: the indexes that extract() takes lie below it.
    std::uint64_t itemCount() const;

    // What is in the documents that were listed so far, counted by the host itself. Whole once the
    // archive is listed to its end.
    const Census& census() const;

    // Inside a row's callback: the kind of the document that the row comes from, by its root
    // element. It tells groups from contacts, which the rows don't.
    std::optional<ItemKind> documentKind() const;

    // From now on list() tells the attachments that the documents name, too.
    void tellAttachments(AttachmentCallback callback);

    // Whether an archive that is listed to its end is one of the kind that the module reads: one of
    // its ".xml" entries has a root element of such an archive.
    bool isOlmArchive() const;

    // Writes the message of one item to `sink`, by its index or by its place. Pass `progress` to
    // watch or cancel. By place, the item need not have been listed; a number above the last one of
    // its document gives an empty message. `attachmentBytes` is told of the attachments' data on
    // their way.
    Extraction extract(std::uint64_t index, ByteSink& sink, const Progress& progress = nullptr,
                       const AttachmentBytes& attachmentBytes = nullptr);
    Extraction extractAt(std::uint32_t entry, std::uint32_t item, ByteSink& sink,
                         const Progress& progress = nullptr,
                         const AttachmentBytes& attachmentBytes = nullptr);

    // What was found wrong with single entries so far, each once, in the order in which it showed.
    const std::vector<EntryFault>& faults() const;

private:
    class OLMHOST_HIDDEN Opened;
    OpenOutcome take(std::unique_ptr<Opened> candidate);
    std::unique_ptr<Opened> opened; // null until open() gave Done
};

} // namespace olmhost

#endif
