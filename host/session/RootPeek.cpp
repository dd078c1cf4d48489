#include "host/session/RootPeek.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "filter/olmfilter.h"
#include "host/archive/ArchiveFile.h"

namespace olmhost {

namespace {

// In ascending byte order of the names. The values don't matter.
// clang-format off
constexpr std::array<UTXML_STRVALPAIR, 7> roots = {{
    {0, "appointments"},
    {1, "categories"},
    {2, "contacts"},
    {3, "emails"},
    {4, "groups"},
    {5, "notes"},
    {6, "tasks"},
}};
// clang-format on

constexpr std::string_view documentEnding = ".xml";

bool isDocumentName(std::string_view name) {
    return name.size() > documentEnding.size() &&
           name.find(documentEnding) == name.size() - documentEnding.size();
}

bool hasKnownRoot(HostStream* entry) {
    UTXMLReader reader = {};
    if (UTXMLInit(&reader, entry) != 0) {
        return false;
    }
    UTXMLSetOption(&reader, 4, 1);
    UTXMLAddTagMap(&reader, "", 0, 0, roots.data(), roots.size());
    UTXMLTagRecord tag = {};
    tag.id = UTXML_UNKNOWN_TAG;
    std::uint64_t extra = 0;
    UTXMLReadNextTag(&reader, &tag, &extra);
    UTXMLDeInit(&reader);
    return tag.id != UTXML_UNKNOWN_TAG;
}

bool hasKnownRoot(ArchiveDirectory* directory, std::uint64_t index) {
    MemberOpenRequest request = {};
    request.archive = directory;
    request.entryIndex = static_cast<std::int64_t>(index);
    request.always1 = 1;
    HostStream* entry = nullptr;
    if (directory->stream.open(&entry, OpenMember, &request, OpenModeRead) != 0) {
        return false;
    }
    const bool isKnown = hasKnownRoot(entry);
    entry->close(entry);
    return isKnown;
}

} // namespace

bool hasKnownRoot(const std::string& path, const Limits& limits) {
    ArchiveFile file(path, limits);
    HostStream* handle = &file;
    ArchiveOpenRequest request = {};
    if (handle->open(&handle, OpenArchive, &request, OpenModeRead) != 0) {
        return false;
    }
    auto* directory = reinterpret_cast<ArchiveDirectory*>(handle);
    for (std::uint64_t index = 0; index < file.entryCount(); ++index) {
        if (isDocumentName(file.entryName(index)) && hasKnownRoot(directory, index)) {
            return true;
        }
    }
    return false;
}

} // namespace olmhost
