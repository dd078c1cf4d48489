#ifndef OLMKIT_HOST_ARCHIVE_ZIPDIRECTORY_H
#define OLMKIT_HOST_ARCHIVE_ZIPDIRECTORY_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include <zip.h>

#include "host/archive/ArchiveBytes.h"
#include "host/archive/EntryInfo.h"
#include "host/archive/OpenFailure.h"

namespace olmhost {

// The directory of a ZIP archive: libzip, reading through ArchiveBytes.
//
// libzip reads the directory and finds an entry's data; the data themselves are read straight from
// the ArchiveBytes, since libzip's own streams neither seek in deflated entries nor can be reused.
//
// One directory serves any number of threads: they take turns.
class ZipDirectory {
public:
    // Null with `failure` filled when there is no readable directory. `bytes` is borrowed for the
    // call.
    static std::unique_ptr<ZipDirectory> open(ArchiveBytes& bytes, OpenFailure& failure);

    ~ZipDirectory();
    ZipDirectory(const ZipDirectory&) = delete;
    ZipDirectory& operator=(const ZipDirectory&) = delete;

    std::uint64_t entryCount() const;

    // The name of an entry, with a 0 byte behind it: as it stands when it is UTF-8, flagged so or
    // not, otherwise converted from code page 437. Valid as long as the directory is.
    const char* name(std::uint64_t index) const;

    // All that the directory says of an entry; `dataOffset` stays 0.
    EntryInfo info(std::uint64_t index) const;

    // Where the entry's data begin in the archive, which is read through `callersBytes`;
    // 0 when they can't be found, with the reason in `reason`. The entry must have data and must
    // not be encrypted.
    std::uint64_t findData(std::uint64_t index, ArchiveBytes& callersBytes, std::string& reason);

private:
    explicit ZipDirectory(ArchiveBytes& bytes) : bytes(&bytes) {}

    static zip_int64_t serve(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command);
    zip_int64_t readNext(void* data, zip_uint64_t length);
    OpenFailure judge(zip_error_t& error);

    mutable std::mutex turn;
    ArchiveBytes* bytes; // of the caller whose turn it is
    zip_t* zip = nullptr;
    std::uint64_t position = 0;     // of libzip's reading
    std::uint64_t lastReadFrom = 0; // where libzip's last read began
    zip_error_t readError = {};     // of libzip's last read
};

} // namespace olmhost

#endif
