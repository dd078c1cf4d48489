#include "host/archive/ZipDirectory.h"

#include <cstring>
#include <new>
#include <string_view>

#include "host/archive/LocalHeader.h"
#include "host/archive/NameText.h"

namespace olmhost {

namespace {

constexpr std::size_t maxEntryName = 0xFFFF; // bytes (APPNOTE 4.4.10)

bool isSystemError(int code) {
    return code == ZIP_ER_READ || code == ZIP_ER_SEEK || code == ZIP_ER_TELL ||
           code == ZIP_ER_OPEN || code == ZIP_ER_MEMORY;
}

} // namespace

std::unique_ptr<ZipDirectory> ZipDirectory::open(ArchiveBytes& bytes, OpenFailure& failure) {
    std::unique_ptr<ZipDirectory> directory(new ZipDirectory(bytes));
    zip_error_init(&directory->readError);
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_function_create(&serve, directory.get(), &error);
    if (source == nullptr) {
        zip_error_fini(&error);
        throw std::bad_alloc();
    }
    directory->zip = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (directory->zip == nullptr) {
        failure = directory->judge(error);
        zip_source_free(source);
        zip_error_fini(&error);
        return nullptr;
    }
    if (directory->systemError != 0) {
        // libzip may take another directory for the one that it couldn't read.
        failure = OpenFailure::unreadable(directory->systemError);
        return nullptr;
    }
    return directory;
}

ZipDirectory::~ZipDirectory() {
    if (zip != nullptr) {
        zip_discard(zip);
    }
    zip_error_fini(&readError);
}

// Returns why libzip didn't open the archive.
OpenFailure ZipDirectory::judge(zip_error_t& error) {
    constexpr std::string_view localHeader("PK\3\4", 4);
    const int code = zip_error_code_zip(&error);
    if (systemError != 0) {
        return OpenFailure::unreadable(systemError);
    }
    if (isSystemError(code)) {
        return {OpenFailureKind::Unreadable,
                std::string("can't be read: ") + zip_error_strerror(&error)};
    }
    char start[localHeader.size()] = {};
    if (bytes->read(0, start, sizeof start) < sizeof start && bytes->error() != 0) {
        return OpenFailure::unreadable(bytes->error());
    }
    const bool startsAsZip = std::string_view(start, sizeof start) == localHeader;
    if (code == ZIP_ER_NOZIP && !startsAsZip) {
        return {OpenFailureKind::NotAnArchive, "is not a ZIP archive"};
    }
    return {OpenFailureKind::Damaged, "is cut off or damaged: it has no readable directory"};
}

std::uint64_t ZipDirectory::entryCount() const {
    return static_cast<std::uint64_t>(zip_get_num_entries(zip, ZIP_FL_UNCHANGED));
}

const char* ZipDirectory::name(std::uint64_t index) const {
    const char* raw = zip_get_name(zip, index, ZIP_FL_UNCHANGED | ZIP_FL_ENC_RAW);
    if (raw == nullptr) {
        return "";
    }
    if (isUtf8(raw)) {
        return raw;
    }
    const char* converted = zip_get_name(zip, index, ZIP_FL_UNCHANGED | ZIP_FL_ENC_GUESS);
    return converted == nullptr || std::strlen(converted) > maxEntryName ? raw : converted;
}

EntryInfo ZipDirectory::info(std::uint64_t index) const {
    const std::lock_guard lock(mutex);
    zip_stat_t state;
    zip_stat_init(&state);
    EntryInfo info;
    if (zip_stat_index(zip, index, ZIP_FL_UNCHANGED, &state) == 0) {
        info.size = state.size;
        info.compressedSize = state.comp_size;
        info.crc = state.crc;
        info.method = state.comp_method;
        info.isEncrypted = state.encryption_method != ZIP_EM_NONE;
    }
    return info;
}

DataPlace ZipDirectory::findData(std::uint64_t index, ArchiveBytes& callersBytes) {
    DataPlace place;
    const auto offset = findHeader(index, callersBytes, place.problem);
    if (!offset) {
        return place;
    }
    const auto header = LocalHeader::read(callersBytes, *offset);
    if (!header || header->info.dataOffset >= callersBytes.size()) {
        place.problem = "the archive ends before them";
        return place;
    }
    const char* name = zip_get_name(zip, index, ZIP_FL_UNCHANGED | ZIP_FL_ENC_RAW);
    place.offset = header->info.dataOffset;
    place.problem = header->differenceFrom(name == nullptr ? "" : name, info(index));
    return place;
}

// Returns the offset of the entry's local header.
std::optional<std::uint64_t>
ZipDirectory::findHeader(std::uint64_t index, ArchiveBytes& callersBytes, std::string& reason) {
    const std::lock_guard lock(mutex);
    bytes = &callersBytes;
    soughtFirst.reset();
    // libzip has no function for the offset, but opening the entry shows it: libzip goes to the
    // local header first.
    zip_file_t* file = zip_fopen_index(zip, index, ZIP_FL_UNCHANGED | ZIP_FL_COMPRESSED);
    if (file == nullptr) {
        reason = zip_strerror(zip);
        return std::nullopt;
    }
    zip_fclose(file);
    return soughtFirst;
}

zip_int64_t ZipDirectory::readNext(void* data, zip_uint64_t length) {
    const std::size_t count = bytes->read(position, data, length);
    if (count < length && bytes->error() != 0) {
        systemError = bytes->error();
        zip_error_set(&readError, ZIP_ER_READ, systemError);
        return -1;
    }
    position += count;
    return static_cast<zip_int64_t>(count);
}

// Serves the archive's file to libzip.
zip_int64_t ZipDirectory::serve(void* self, void* data, zip_uint64_t length,
                                zip_source_cmd_t command) {
    auto& directory = *static_cast<ZipDirectory*>(self);
    switch (command) {
    case ZIP_SOURCE_OPEN:
        directory.position = 0;
        return 0;
    case ZIP_SOURCE_READ:
        return directory.readNext(data, length);
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_FREE:
        return 0;
    case ZIP_SOURCE_STAT: {
        auto* state = static_cast<zip_stat_t*>(data);
        zip_stat_init(state);
        state->size = directory.bytes->size();
        state->comp_size = state->size;
        state->valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE;
        return sizeof *state;
    }
    case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&directory.readError, data, length);
    case ZIP_SOURCE_SEEK: {
        const zip_int64_t target = zip_source_seek_compute_offset(
            directory.position, directory.bytes->size(), data, length, &directory.readError);
        if (target < 0) {
            return -1;
        }
        directory.position = static_cast<std::uint64_t>(target);
        if (!directory.soughtFirst) {
            directory.soughtFirst = directory.position;
        }
        return 0;
    }
    case ZIP_SOURCE_TELL:
        return static_cast<zip_int64_t>(directory.position);
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(
            ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR,
            ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, ZIP_SOURCE_SUPPORTS, -1);
    default:
        zip_error_set(&directory.readError, ZIP_ER_OPNOTSUPP, 0);
        return -1;
    }
}

} // namespace olmhost
