#ifndef OLMKIT_HOST_ARCHIVE_ARCHIVECONTENTS_H
#define OLMKIT_HOST_ARCHIVE_ARCHIVECONTENTS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "filter/boundary/Archive.h"
#include "host/archive/NameIndex.h"
#include "host/archive/OpenFailure.h"
#include "host/archive/ZipDirectory.h"

namespace olmhost {

// An archive's directory, read once and shared by everyone who has the archive open: it never
// changes, and any number of threads may use it. Holds for each row the name, four bytes, and what
// libzip needs; eight bytes more once an entry is looked up by name.
class ArchiveContents {
public:
    // Returns null, with `failure` filled, when there is no readable directory or it is too large.
    // `bytes` is borrowed for the call.
    static std::shared_ptr<ArchiveContents> open(ArchiveBytes& bytes, OpenFailure& failure);

    ArchiveContents(const ArchiveContents&) = delete;
    ArchiveContents& operator=(const ArchiveContents&) = delete;

    // Returns the number of rows.
    std::uint64_t entryCount() const { return offsets.size() - 1; }

    // Returns the name of row `index`: UTF-8, followed by a 0 byte, valid as long as this object.
    // Empty when there is no such row.
    std::string_view name(std::uint64_t index) const;

    // Returns whether the row's name ends as a document's does.
    bool isDocument(std::uint64_t index) const { return name(index).ends_with(".xml"); }

    // Returns all names, each followed by a 0 byte.
    const char* namePool() const { return names.get(); }

    // Returns the rows as the module reads them, nothing known of their items.
    std::vector<ArchiveEntry> makeRows() const;

    // Returns the directory's data of row `index`; all 0 when there is no such row. See
    // ZipDirectory.
    EntryInfo info(std::uint64_t index) const { return directory->info(index); }
    // See ZipDirectory.
    DataPlace findData(std::uint64_t index, ArchiveBytes& callersBytes) const {
        return directory->findData(index, callersBytes);
    }

    // Returns the first file of that name; see NameIndex.
    std::optional<NameIndex::Row> find(std::string_view name) const;

    // Returns true when there are documents and none of them can be read without a password.
    bool isLocked() const;

private:
    explicit ArchiveContents(std::unique_ptr<ZipDirectory> directory);

    bool readNames(OpenFailure& failure);

    std::unique_ptr<ZipDirectory> directory;
    std::unique_ptr<char[]> names;
    std::vector<std::uint32_t> offsets; // of each name in `names`, and of the end
    mutable std::mutex indexMutex;
    mutable std::optional<NameIndex> nameIndex; // built by the first find()
};

} // namespace olmhost

#endif
