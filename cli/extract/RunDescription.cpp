#include "cli/extract/RunDescription.h"

#include <algorithm>
#include <array>
#include <span>

#include "cli/files/Sha256.h"
#include "cli/rows/JsonLine.h"

namespace olmkit {

namespace {

void addNumber(Sha256& hash, std::uint64_t number) {
    std::array<std::byte, sizeof number> bytes = {};
    for (std::byte& byte : bytes) {
        byte = static_cast<std::byte>(number & 0xFF);
        number >>= 8;
    }
    hash.add(bytes);
}

// Returns the SHA-256 over the names, sizes and checksums of all entries.
std::string directoryHash(const olmhost::Session& session) {
    Sha256 hash;
    for (std::uint64_t entry = 0; entry < session.entryCount(); ++entry) {
        const std::string_view name = session.entryName(entry);
        addNumber(hash, name.size());
        hash.add(std::as_bytes(std::span(name)));
        const olmhost::EntrySize size = session.entrySize(entry);
        addNumber(hash, size.size);
        addNumber(hash, size.checksum);
    }
    return hash.end();
}

JsonObject archiveObject(const olmhost::Session& session) {
    JsonObject object;
    object["size"] = session.archiveSize();
    object["directory_sha256"] = directoryHash(session);
    return object;
}

JsonObject countOrNull(const std::optional<Moment>& moment) {
    return moment.has_value() ? JsonObject(moment->time_since_epoch().count()) : JsonObject();
}

JsonObject optionsObject(const ExtractOptions& options) {
    std::vector<std::uint64_t> items = options.items;
    std::ranges::sort(items);
    items.erase(std::unique(items.begin(), items.end()), items.end());
    JsonObject places = JsonObject::array();
    for (const ItemPlace& place : options.places) {
        places.push_back({place.entry, place.item});
    }
    JsonObject object;
    object["item"] = items;
    object["at"] = places;
    object["kind"] = options.filter.kinds;
    object["folder"] = options.filter.folders;
    object["from"] = orNull(options.filter.from);
    object["subject"] = orNull(options.filter.subject);
    object["since"] = countOrNull(options.filter.since);
    object["until"] = countOrNull(options.filter.until);
    object["layout"] = options.layout == Layout::Flat ? "flat" : "tree";
    object["timestamps"] = options.hasTimestamps;
    object["attachments"] = options.attachments;
    return object;
}

} // namespace

RunRecord describeRun(const ExtractOptions& options, const olmhost::Session& session) {
    return {archiveObject(session), optionsObject(options), options.shard};
}

} // namespace olmkit
