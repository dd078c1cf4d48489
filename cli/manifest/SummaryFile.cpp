#include "cli/manifest/SummaryFile.h"

#include <utility>

#include "cli/manifest/RunFiles.h"
#include "cli/rows/JsonLine.h"

namespace olmkit {

namespace {

constexpr auto extentNames = std::to_array<std::pair<RunExtent, const char*>>({
    {RunExtent::Whole, "whole"},
    {RunExtent::Shard, "shard"},
    {RunExtent::Selection, "selection"},
});

const char* nameOf(RunExtent extent) {
    for (const auto& [named, name] : extentNames) {
        if (named == extent) {
            return name;
        }
    }
    return "";
}

JsonObject objectOf(const KindNumbers& numbers) {
    JsonObject object;
    object["documents"] = numbers.documents;
    object["items"] = numbers.items;
    object["listed"] = numbers.listed;
    object["requested"] = numbers.requested;
    object["written"] = numbers.written;
    object["failed"] = numbers.failed;
    return object;
}

JsonObject objectOf(const AttachmentNumbers& numbers) {
    JsonObject object;
    object["named"] = numbers.named();
    object["of_other_items"] = numbers.ofOtherItems;
    object["written"] = numbers.written;
    object["lost"] = numbers.lost;
    return object;
}

JsonObject objectOf(const NotedEntry& entry) {
    JsonObject object;
    object["entry"] = entry.entry;
    object["entry_name"] = entry.name;
    object["items"] = entry.items;
    object["listed"] = entry.listed;
    object["mismatch"] = entry.isMismatch;
    object["reason"] = entry.reason;
    return object;
}

JsonObject objectOf(const SummaryNumbers& numbers) {
    JsonObject object;
    object["extent"] = nameOf(numbers.extent);
    object["adds_up"] = numbers.addsUp;
    for (std::size_t place = 0; place < summaryKinds.size(); ++place) {
        const KindNumbers& kind = numbers.kinds[place];
        if (place != unknownPlace || kind.requested + kind.listed > 0) {
            object["kinds"][std::string(summaryKinds[place])] = objectOf(kind);
        }
    }
    object["attachments"] = objectOf(numbers.attachments);
    object["findings"] = numbers.findings;
    object["noted_entries"] = JsonObject::array();
    for (const NotedEntry& entry : numbers.notedEntries) {
        object["noted_entries"].push_back(objectOf(entry));
    }
    return object;
}

KindNumbers kindOf(const JsonObject& object) {
    return {object.at("documents"), object.at("items"),   object.at("listed"),
            object.at("requested"), object.at("written"), object.at("failed")};
}

// The file has one number for `ofMails` and `unnamed` together.
AttachmentNumbers attachmentsOf(const JsonObject& object) {
    AttachmentNumbers numbers;
    numbers.ofOtherItems = object.at("of_other_items");
    numbers.ofMails = object.at("named").get<std::uint64_t>() - numbers.ofOtherItems;
    numbers.written = object.at("written");
    numbers.lost = object.at("lost");
    return numbers;
}

NotedEntry entryOf(const JsonObject& object) {
    return {object.at("entry"),  object.at("entry_name"), object.at("items"),
            object.at("listed"), object.at("mismatch"),   object.at("reason")};
}

} // namespace

int writeSummary(const SummaryNumbers& numbers, const ManifestSeal& seal,
                 OutputDirectory& directory) {
    JsonObject object = objectOf(numbers);
    object["manifest"] = objectOf(seal);
    constexpr int indent = 2;
    return directory.putFile(runfile::summary,
                             object.dump(indent, ' ', false, JsonObject::error_handler_t::replace) +
                                 "\n");
}

std::optional<SummaryNumbers> readSummary(const std::string& text) {
    try {
        const JsonObject object = JsonObject::parse(text);
        SummaryNumbers numbers;
        for (const auto& [extent, name] : extentNames) {
            if (object.at("extent") == name) {
                numbers.extent = extent;
            }
        }
        for (const auto& [name, kind] : object.at("kinds").items()) {
            numbers.of(name) = kindOf(kind);
        }
        numbers.attachments = attachmentsOf(object.at("attachments"));
        for (const JsonObject& entry : object.at("noted_entries")) {
            numbers.notedEntries.push_back(entryOf(entry));
        }
        return numbers;
    } catch (const JsonObject::exception&) {
        return std::nullopt;
    }
}

std::optional<ManifestSeal> readSeal(const std::string& text) {
    return sealIn(JsonObject::parse(text, nullptr, false));
}

} // namespace olmkit
