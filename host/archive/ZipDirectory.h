#ifndef OLMKIT_HOST_ARCHIVE_ZIPDIRECTORY_H
#define OLMKIT_HOST_ARCHIVE_ZIPDIRECTORY_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <zip.h>

#include "host/archive/ArchiveBytes.h"
#include "host/archive/EntryInfo.h"
#include "host/archive/OpenFailure.h"

namespace olmhost {

// Where an entry's data are.
struct DataPlace {
    std::uint64_t offset = 0; // in the archive; 0 when they can't be found
    std::string problem;      // why not, or how the local header differs from the directory
};

// The directory of a ZIP archive: libzip, reading through ArchiveBytes.
//
// libzip reads the directory and finds an entry's data; the data are read directly from the
// ArchiveBytes, since libzip's own streams can neither seek in deflated entries nor be reused.
//
// One directory serves any number of threads, one at a time.
class ZipDirectory {
public:
    // Returns null, with `failure` filled, when there is no readable directory. `bytes` is borrowed
    // for the call.
    static std::unique_ptr<ZipDirectory> open(ArchiveBytes& bytes, OpenFailure& failure);

    ~ZipDirectory();
    ZipDirectory(const ZipDirectory&) = delete;
    ZipDirectory& operator=(const ZipDirectory&) = delete;

    std::uint64_t entryCount() const;

    // Returns the name of an entry, followed by a 0 byte: as it is when it is UTF-8, flagged so or
    // not, otherwise converted from code page 437. Valid as long as the directory.
    const char* name(std::uint64_t index) const;

    // Returns the directory's data of an entry; `dataOffset` stays 0. All 0 for an unknown one.
    EntryInfo info(std::uint64_t index) const;

    // Returns where the entry's data begin in the archive, which is read through `callersBytes`.
    // REQUIRES: the entry has data and is not encrypted.
    DataPlace findData(std::uint64_t index, ArchiveBytes& callersBytes);

private:
    explicit ZipDirectory(ArchiveBytes& bytes) : bytes(&bytes) {}

    static zip_int64_t serve(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command);
    zip_int64_t readNext(void* data, zip_uint64_t length);
    OpenFailure judge(zip_error_t& error);
    std::optional<std::uint64_t> findHeader(std::uint64_t index, ArchiveBytes& callersBytes,
                                            std::string& reason);

    mutable std::mutex mutex;
    ArchiveBytes* bytes; // of the caller that holds the mutex
    zip_t* zip = nullptr;
    std::uint64_t position = 0;               // of libzip's reading
    std::optional<std::uint64_t> soughtFirst; // by libzip, in findHeader()
    zip_error_t readError = {};               // of libzip's last read
    int systemError = 0;                      // errno of the last of its reads that failed
};

} // namespace olmhost

#endif
