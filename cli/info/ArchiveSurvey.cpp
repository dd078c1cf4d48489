#include "cli/info/ArchiveSurvey.h"

#include <algorithm>
#include <cstdio>

namespace olmkit {

namespace {

JsonObject momentOrNull(const std::optional<Moment>& moment) {
    return moment ? JsonObject(momentText(*moment)) : JsonObject();
}

void addFolders(JsonObject& list, const Folder& folder, const std::string& path) {
    for (const auto& [name, child] : folder.children) {
        std::string childPath = path;
        childPath.append(path.empty() ? "" : "/").append(name);
        JsonObject object;
        object["path"] = childPath;
        object["items"] = child.own;
        object["total"] = child.total;
        list.push_back(std::move(object));
        addFolders(list, child, childPath);
    }
}

JsonObject kindsOf(const ArchiveSurvey& report) {
    JsonObject list = JsonObject::array();
    for (std::size_t place = 0; place < report.kinds.size(); ++place) {
        const KindSurvey& kind = report.kinds[place];
        JsonObject object;
        object["kind"] = olmhost::nameOf(static_cast<olmhost::ItemKind>(place));
        object["documents"] = kind.counted.documents;
        object["items"] = kind.counted.items;
        object["listed"] = kind.listed;
        object["earliest"] = momentOrNull(kind.earliest);
        object["latest"] = momentOrNull(kind.latest);
        object["attachments"] = kind.counted.attachments + kind.counted.unnamedAttachments;
        list.push_back(std::move(object));
    }
    return list;
}

JsonObject entryOf(const EntryReport& report) {
    JsonObject object;
    object["entry"] = report.entry ? JsonObject(*report.entry) : JsonObject();
    object["entry_name"] = report.entry ? JsonObject(report.entryName) : JsonObject();
    return object;
}

JsonObject attachmentsOf(const ArchiveSurvey& report) {
    JsonObject object;
    std::uint64_t named = 0;
    std::uint64_t unnamed = 0;
    for (const KindSurvey& kind : report.kinds) {
        named += kind.counted.attachments;
        unnamed += kind.counted.unnamedAttachments;
    }
    object["count"] = named + unnamed;
    object["missing"] = report.missingAttachments;
    object["unnamed"] = unnamed;
    object["largest"] = JsonObject::array();
    for (const AttachmentReport& attachment : report.largest) {
        JsonObject one;
        one["name"] = attachment.name;
        one["size"] = attachment.size;
        one["entry"] = attachment.entry;
        object["largest"].push_back(std::move(one));
    }
    return object;
}

} // namespace

std::string momentText(Moment moment) {
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(moment - day));
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

bool ArchiveSurvey::isDamaged() const {
    const bool isMismatched = std::ranges::any_of(
        documents, [](const DocumentReport& document) { return document.note.isMismatch(); });
    return isMismatched || !faults.empty() || encryptedEntries > 0 || missingAttachments > 0;
}

JsonObject ArchiveSurvey::json() const {
    JsonObject object;
    object["archive"] = archive;
    object["size"] = size;
    object["unpacked_size"] = unpackedSize;
    object["entries"] = entries;
    object["directories"] = directories;
    object["checked"] = isChecked;
    object["damaged"] = isDamaged();
    object["kinds"] = kindsOf(*this);
    object["accounts"] = JsonObject::array();
    for (const auto& [folder, items] : accounts) {
        object["accounts"].push_back({{"folder", folder}, {"items", items}});
    }
    object["folders"] = JsonObject::array();
    if (const std::uint64_t loose = folders.root().own; loose > 0) {
        object["folders"].push_back({{"path", ""}, {"items", loose}, {"total", loose}});
    }
    addFolders(object["folders"], folders.root(), "");
    object["attachments"] = attachmentsOf(*this);
    object["encrypted"]["count"] = encryptedEntries;
    object["encrypted"]["first"] = JsonObject::array();
    for (const EntryReport& entry : encrypted) {
        object["encrypted"]["first"].push_back(entryOf(entry));
    }
    object["noted_entries"] = JsonObject::array();
    for (const DocumentReport& document : documents) {
        JsonObject one;
        one["entry"] = document.note.entryIndex;
        one["entry_name"] = document.entryName;
        one["items"] = document.note.items;
        one["listed"] = document.note.rows;
        one["reason"] = document.note.text;
        object["noted_entries"].push_back(std::move(one));
    }
    object["faults"] = JsonObject::array();
    for (const EntryReport& fault : faults) {
        JsonObject one = entryOf(fault);
        one["reason"] = fault.text;
        object["faults"].push_back(std::move(one));
    }
    return object;
}

} // namespace olmkit
