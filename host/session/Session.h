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

// The size of one entry, as the archive's directory has it.
struct EntrySize {
    std::uint64_t size = 0;       // bytes, uncompressed
    std::uint64_t packedSize = 0; // bytes in the archive
    std::uint32_t checksum = 0;   // CRC-32 of the uncompressed bytes
    bool isEncrypted = false;
};

// The answer of a row callback.
enum class RowAnswer {
    Continue,
    Pause, // after the current entry, whose other rows still come
};

using RowCallback = std::function<RowAnswer(const Row&)>;

// One open archive, its rows and its extractions.
//
// Order of calls: open() once; then list() until it returns true, and extract() and extractAt() at
// any time outside a callback. Rows are not kept, so memory grows only by what the module keeps to
// find an item again.
//
// A session is used by one thread at a time; any number of sessions may run at once. What a
// callback throws leaves the function that calls it, and the session continues as after a pause or
// a cancelled extraction. Apart from that, only std::bad_alloc is thrown.
class OLMHOST_EXPORT Session {
public:
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    // Opens the archive at `path` (bytes as the file system has them). Unless the status is Done,
    // the session can only be opened again.
    [[nodiscard]] OpenOutcome open(const std::string& path, const SessionOptions& options = {});

    // Opens the archive that `first` has open, for another thread. Costs next to nothing: the
    // archive's directory is shared and not read again. Neither session has to outlive the other;
    // `first` must not be in use during the call.
    [[nodiscard]] OpenOutcome openBeside(const Session& first);

    // Returns the fourteen columns as the module defined them.
    const std::vector<Column>& columns() const;

    // Returns the number of rows of the archive's directory, and the name of one: UTF-8, valid
    // while the session is open, empty after the last row.
    std::uint64_t entryCount() const;
    std::string_view entryName(std::uint64_t entry) const;

    // Returns the size of a row, all 0 after the last; and the row of the first file of that name,
    // as an item has it for an attachment.
    EntrySize entrySize(std::uint64_t entry) const;
    std::optional<std::uint64_t> findEntry(std::string_view name) const;

    // Returns the size of the archive's file in bytes.
    std::uint64_t archiveSize() const;

    // Reads a row's data to their end, unless that was done. Adds a fault when they can't be read
    // or are wrong.
    void check(std::uint64_t entry);

    // Delivers rows, from where the last call ended. Returns true at the end of the archive, false
    // after a pause. An entry that can't be read is skipped: see faults().
    bool list(const RowCallback& callback);

    // Returns the number of items delivered so far: extract() takes the indexes below it.
    std::uint64_t itemCount() const;

    // Returns what is in the documents listed so far, counted by the host itself. Complete once the
    // archive is listed to its end.
    const Census& census() const;

    // Returns the kind of the document that the current row comes from, by its root element. It
    // distinguishes groups from contacts, which the rows don't.
    // REQUIRES: called in a row callback.
    std::optional<ItemKind> documentKind() const;

    // From now on list() passes the attachments that the documents name to `callback`.
    void setAttachmentCallback(AttachmentCallback callback);

    // Returns whether an archive that is listed to its end is an OLM archive: one of its ".xml"
    // entries has a root element of such an archive.
    bool isOlmArchive() const;

    // Writes the message of one item to `sink`, by its index, or by its entry (from 0) and its
    // number there (from 1). `progress` may cancel. extractAt() needs no listing; for a number
    // above the last one of its document it writes an empty message. `attachmentBytes` receives the
    // attachments' data as they are written.
    Extraction extract(std::uint64_t index, ByteSink& sink, const Progress& progress = nullptr,
                       const AttachmentBytes& attachmentBytes = nullptr);
    Extraction extractAt(std::uint32_t entry, std::uint32_t item, ByteSink& sink,
                         const Progress& progress = nullptr,
                         const AttachmentBytes& attachmentBytes = nullptr);

    // Returns the faults of entries so far, each once, in the order in which they were found.
    const std::vector<EntryFault>& faults() const;

private:
    class OLMHOST_HIDDEN Opened;
    OpenOutcome take(std::unique_ptr<Opened> candidate);
    std::unique_ptr<Opened> opened; // null until open() gave Done
};

} // namespace olmhost

#endif
