#include "host/archive/ArchiveContents.h"

#include <cstring>
#include <limits>
#include <utility>

namespace olmhost {

std::shared_ptr<ArchiveContents> ArchiveContents::open(ArchiveBytes& bytes, OpenFailure& failure) {
    auto directory = ZipDirectory::open(bytes, failure);
    if (directory == nullptr) {
        return nullptr;
    }
    std::shared_ptr<ArchiveContents> contents(new ArchiveContents(std::move(directory)));
    return contents->readNames(failure) ? contents : nullptr;
}

ArchiveContents::ArchiveContents(std::unique_ptr<ZipDirectory> directory)
    : directory(std::move(directory)) {}

// Copies the names into one block of the right size.
bool ArchiveContents::readNames(OpenFailure& failure) {
    const std::uint64_t count = directory->entryCount();
    std::uint64_t poolSize = 0;
    for (std::uint64_t index = 0; index < count; ++index) {
        poolSize += std::strlen(directory->name(index)) + 1;
    }
    constexpr std::uint64_t maxRows = std::numeric_limits<NameIndex::Row>::max();
    if (count > maxRows || poolSize > std::numeric_limits<std::uint32_t>::max()) {
        failure = {OpenFailureKind::LimitReached, "has more entries than can be listed"};
        return false;
    }
    offsets.resize(count + 1);
    names.reset(new char[poolSize + 1]);
    std::uint32_t offset = 0;
    for (std::uint64_t index = 0; index < count; ++index) {
        const char* name = directory->name(index);
        const std::size_t size = std::strlen(name) + 1;
        std::memcpy(names.get() + offset, name, size);
        offset += static_cast<std::uint32_t>(size);
        offsets[index + 1] = offset;
    }
    return true;
}

std::string_view ArchiveContents::name(std::uint64_t index) const {
    if (index >= entryCount()) {
        return {};
    }
    return {names.get() + offsets[index], offsets[index + 1] - offsets[index] - 1};
}

std::vector<ArchiveEntry> ArchiveContents::makeRows() const {
    std::vector<ArchiveEntry> rows(entryCount());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows[index].nameOffset = offsets[index];
        rows[index].nameLength = static_cast<std::uint16_t>(name(index).size());
    }
    return rows;
}

std::optional<NameIndex::Row> ArchiveContents::find(std::string_view name) const {
    const std::lock_guard lock(indexMutex);
    if (!nameIndex) {
        nameIndex.emplace(static_cast<NameIndex::Row>(entryCount()),
                          [this](NameIndex::Row row) { return this->name(row); });
    }
    return nameIndex->find(name);
}

bool ArchiveContents::isLocked() const {
    bool hasDocuments = false;
    for (std::uint64_t index = 0; index < entryCount(); ++index) {
        if (isDocument(index)) {
            if (!info(index).isEncrypted) {
                return false;
            }
            hasDocuments = true;
        }
    }
    return hasDocuments;
}

} // namespace olmhost
