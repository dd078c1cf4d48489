#include "cli/manifest/RunRecord.h"

#include "cli/terminal/ProgramVersion.h"

namespace olmkit {

namespace {

JsonObject shardObject(const std::optional<Shard>& shard) {
    JsonObject object;
    if (shard.has_value()) {
        object["number"] = shard->number;
        object["count"] = shard->count;
    }
    return object;
}

} // namespace

RunRecord::RunRecord(const JsonObject& archive, const JsonObject& options,
                     const std::optional<Shard>& shard) {
    JsonObject object;
    object["program"] = std::string("olmkit ") + programVersion;
    object["archive"] = archive;
    object["options"] = options;
    object["shard"] = shardObject(shard);
    object["manifest"] = nullptr;
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
        record.options = object.at("options").dump();
        if (const JsonObject& shard = object.at("shard"); !shard.is_null()) {
            record.ownShard = {shard.at("number").get<std::uint64_t>(),
                               shard.at("count").get<std::uint64_t>()};
        }
        record.ownSeal = sealIn(object);
        return record;
    } catch (const JsonObject::exception&) {
        return std::nullopt;
    }
}

std::string RunRecord::sealedText(const ManifestSeal& seal) const {
    JsonObject object = JsonObject::parse(line);
    object["manifest"] = objectOf(seal);
    std::string text;
    appendLine(text, object);
    return text;
}

std::string RunRecord::differenceTo(const RunRecord& other) const {
    if (archive != other.archive) {
        return "was made from another archive";
    }
    if (options != other.options) {
        return "was made with other options";
    }
    if (program != other.program) {
        return "was made by another version of this program";
    }
    return {};
}

} // namespace olmkit
