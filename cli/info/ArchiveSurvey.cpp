#include "cli/info/ArchiveSurvey.h"

#include <algorithm>

namespace olmkit {

namespace {

JsonObject momentOrNull(const std::optional<Moment>& moment) {
    return moment ? JsonObject(utcText(*moment)) : JsonObject();
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

JsonObject kindsOf(const ArchiveSurvey& survey) {
    JsonObject list = JsonObject::array();
    for (std::size_t place = 0; place < survey.kinds.size(); ++place) {
        const KindSurvey& kind = survey.kinds[place];
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

JsonObject entryOf(const EntryFinding& finding) {
    JsonObject object;
    object["entry"] = orNull(finding.entry);
    object["entry_name"] = finding.entry ? JsonObject(finding.entryName) : JsonObject();
    return object;
}

JsonObject attachmentsOf(const ArchiveSurvey& survey) {
    JsonObject object;
    object["count"] = survey.attachments();
    object["missing"] = survey.missingAttachments;
    object["unnamed"] = survey.unnamedAttachments();
    object["largest"] = JsonObject::array();
    for (const FoundAttachment& attachment : survey.largest) {
        JsonObject one;
        one["name"] = attachment.name;
        one["size"] = attachment.size;
        one["entry"] = attachment.entry;
        object["largest"].push_back(std::move(one));
    }
    return object;
}

} // namespace

std::string utcText(Moment moment) {
    return momentText(moment) + "Z";
}

std::uint64_t ArchiveSurvey::attachments() const {
    std::uint64_t count = unnamedAttachments();
    for (const KindSurvey& kind : kinds) {
        count += kind.counted.attachments;
    }
    return count;
}

std::uint64_t ArchiveSurvey::unnamedAttachments() const {
    std::uint64_t count = 0;
    for (const KindSurvey& kind : kinds) {
        count += kind.counted.unnamedAttachments;
    }
    return count;
}

bool ArchiveSurvey::isDamaged() const {
    const bool isMismatched = std::ranges::any_of(
        documents, [](const NotedDocument& document) { return document.note.isMismatch(); });
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
    for (const EntryFinding& entry : encrypted) {
        object["encrypted"]["first"].push_back(entryOf(entry));
    }
    object["noted_entries"] = JsonObject::array();
    for (const NotedDocument& document : documents) {
        JsonObject one;
        one["entry"] = document.note.entryIndex;
        one["entry_name"] = document.entryName;
        one["items"] = document.note.items;
        one["listed"] = document.note.rows;
        one["reason"] = document.note.text;
        object["noted_entries"].push_back(std::move(one));
    }
    object["faults"] = JsonObject::array();
    for (const EntryFinding& fault : faults) {
        JsonObject one = entryOf(fault);
        one["reason"] = fault.text;
        object["faults"].push_back(std::move(one));
    }
    return object;
}

} // namespace olmkit
