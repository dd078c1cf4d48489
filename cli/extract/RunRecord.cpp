#include "cli/extract/RunRecord.h"

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

// Over the names, sizes and checksums of all entries.
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

// The options that decide what is written.
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

JsonObject shardObject(const std::optional<Shard>& shard) {
    JsonObject object;
    if (shard.has_value()) {
        object["number"] = shard->number;
        object["count"] = shard->count;
    }
    return object;
}

} // namespace

RunRecord::RunRecord(const ExtractOptions& options, const olmhost::Session& session) {
    JsonObject object;
    object["program"] = "olmkit " OLMKIT_VERSION;
    object["archive"] = archiveObject(session);
    object["options"] = optionsObject(options);
    object["shard"] = shardObject(options.shard);
    std::string text;
    appendLine(text, object);
    *this = read(text).value();
}

std::optional<RunRecord> RunRecord::read(const std::string& text) {
    try {
        const JsonObject object = JsonObject::parse(text);
        RunRecord record;
        record.line = text;
        record.program = object.at("program").dump();
        record.archive = object.at("archive").dump();
        record.chosen = object.at("options").dump();
        if (const JsonObject& shard = object.at("shard"); !shard.is_null()) {
            record.ownShard = {shard.at("number").get<std::uint64_t>(),
                               shard.at("count").get<std::uint64_t>()};
        }
        return record;
    } catch (const JsonObject::exception&) {
        return std::nullopt;
    }
}

std::string RunRecord::differenceTo(const RunRecord& other) const {
    if (archive != other.archive) {
        return "was made from another archive";
    }
    if (chosen != other.chosen) {
        return "was made with other options";
    }
    if (program != other.program) {
        return "was made by another version of this program";
    }
    return {};
}

std::string shardTitle(const Shard& shard) {
    return std::to_string(shard.number) + "/" + std::to_string(shard.count);
}

} // namespace olmkit
