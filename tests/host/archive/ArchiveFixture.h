#ifndef OLMKIT_TESTS_HOST_ARCHIVE_ARCHIVEFIXTURE_H
#define OLMKIT_TESTS_HOST_ARCHIVE_ARCHIVEFIXTURE_H

#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "filter/boundary/Archive.h"
#include "host/archive/ArchiveContents.h"
#include "host/archive/ArchiveFile.h"
#include "tests/host/archive/ZipBuilder.h"

namespace olmhost::test {

// Uses an archive as the module does, only through the records.
class ArchiveFixture : public ::testing::Test {
public:
    ArchiveFixture() {
        std::string pattern = (std::filesystem::temp_directory_path() / "archiveXXXXXX").string();
        folder = ::mkdtemp(pattern.data());
    }

    ~ArchiveFixture() override {
        file.reset();
        std::filesystem::remove_all(folder);
    }

protected:
    std::string write(const std::string& name, std::string_view bytes) {
        std::string path = folder / name;
        std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
        return path;
    }

    // Returns the status of opening `path`; stores the request's flags in `flags`.
    std::int32_t openPath(const std::string& path, const Limits& limits = {}) {
        file = std::make_unique<ArchiveFile>(path, limits);
        HostStream* handle = file.get();
        ArchiveOpenRequest request = {};
        const std::int32_t status = handle->open(&handle, OpenArchive, &request, OpenModeRead);
        flags = request.flags;
        directory = status == 0 ? reinterpret_cast<ArchiveDirectory*>(handle) : nullptr;
        if (status != 0) {
            EXPECT_EQ(handle, file.get()) << "the handle of a failed open stays what it was";
        }
        return status;
    }

    // Opens an archive of these bytes; ends the test case when that fails.
    void openBytes(std::string_view bytes, const Limits& limits = {}) {
        ASSERT_EQ(openPath(write("test.olm", bytes), limits), 0) << file->failure().text;
    }

    void openZip(const ZipBuilder& zip, const Limits& limits = {}) {
        openBytes(zip.bytes(), limits);
    }

    // Returns null when the entry doesn't open.
    HostStream* open(std::uint64_t index) { return open({}, std::int64_t(index)); }

    HostStream* open(std::string_view name) { return open(name, MEMBER_BY_NAME); }

    HostStream* open(std::string_view name, std::int64_t index) {
        MemberOpenRequest request = {};
        request.archive = directory;
        name.copy(request.name, sizeof request.name);
        request.entryIndex = index;
        request.always1 = 1;
        HostStream* handle = nullptr;
        const auto status = directory->stream.open(&handle, OpenMember, &request, OpenModeRead);
        EXPECT_EQ(status == 0, handle != nullptr);
        return handle;
    }

    // Returns all bytes from the handle's position on, read `step` at a time.
    static std::string readOn(HostStream* handle, std::uint32_t step = 1024) {
        std::string text;
        std::string buffer(step, '\0');
        std::uint32_t count = 0;
        while (handle->read(handle, buffer.data(), step, &count) == 0) {
            text.append(buffer, 0, count);
        }
        EXPECT_EQ(count, 0U) << "no bytes come with the end";
        return text;
    }

    static std::string readSome(HostStream* handle, std::uint32_t size) {
        std::string buffer(size, '\0');
        std::uint32_t count = 0;
        handle->read(handle, buffer.data(), size, &count);
        buffer.resize(count);
        return buffer;
    }

    // Returns the bytes of an entry; none when it doesn't open.
    template <typename Which> std::optional<std::string> contents(Which which) {
        HostStream* handle = open(which);
        if (handle == nullptr) {
            return std::nullopt;
        }
        std::string text = readOn(handle);
        handle->close(handle);
        return text;
    }

    // Returns "kind entry: text" of the only fault, or how many there are.
    std::string onlyFault() const {
        const auto& faults = file->faults();
        if (faults.size() != 1) {
            return std::to_string(faults.size()) + " faults";
        }
        const std::string entry = faults[0].entryIndex == EntryFault::noEntry
                                      ? "none"
                                      : std::to_string(faults[0].entryIndex);
        return std::string(nameOf(faults[0].kind)) + " " + entry + ": " + faults[0].text;
    }

    static const char* nameOf(FaultKind kind) {
        switch (kind) {
        case FaultKind::CannotOpen:
            return "CannotOpen";
        case FaultKind::Encrypted:
            return "Encrypted";
        case FaultKind::Damaged:
            return "Damaged";
        case FaultKind::Checksum:
            return "Checksum";
        case FaultKind::LimitReached:
            return "LimitReached";
        case FaultKind::OtherHeader:
            return "other header";
        case FaultKind::ReadFailed:
            return "read failed";
        case FaultKind::BrokenMarkup:
            return "BrokenMarkup";
        }
        return "unknown";
    }

    std::filesystem::path folder;
    std::unique_ptr<ArchiveFile> file;
    ArchiveDirectory* directory = nullptr;
    std::uint16_t flags = 0;
};

} // namespace olmhost::test

#endif
