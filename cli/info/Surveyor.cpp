#include "cli/info/Surveyor.h"

#include <algorithm>
#include <string_view>

#include "cli/rows/ItemRow.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

// Of each account that isn't the machine's own.
constexpr std::string_view accountsFolder = "Accounts";

// Holds the bytes of attachments, no items.
constexpr std::string_view attachmentFolder = "com.microsoft.__Attachments/";

bool isLarger(const AttachmentReport& left, const AttachmentReport& right) {
    return left.size != right.size ? left.size > right.size : left.entry < right.entry;
}

} // namespace

ArchiveSurvey Surveyor::survey(bool isChecking) {
    if (!listItems()) {
        return std::move(report);
    }
    report.size = session.archiveSize();
    report.entries = session.entryCount();
    report.isChecked = isChecking;
    for (std::uint64_t entry = 0; entry < report.entries; ++entry) {
        addEntry(entry, isChecking);
    }
    report.folders.total();
    addAccounts();
    addNotes();
    return std::move(report);
}

// Whether the archive was listed to its end.
bool Surveyor::listItems() {
    session.setAttachmentCallback(
        [this](const olmhost::NamedAttachment& attachment) { addAttachment(attachment); });
    bool isStopped = false;
    const olmhost::RowCallback take = [this, &isStopped](const olmhost::Row& row) {
        const RowUse use = isStopped ? RowUse::Stop : visit ? visit(row) : RowUse::Counted;
        if (use == RowUse::Counted) {
            addRow(row);
        }
        isStopped = use == RowUse::Stop;
        return isStopped ? olmhost::RowAnswer::Pause : olmhost::RowAnswer::Continue;
    };
    while (!session.list(take) && !isStopped) {
    }
    session.setAttachmentCallback(nullptr);
    endFolder();
    for (std::size_t place = 0; place < report.kinds.size(); ++place) {
        report.kinds[place].counted = session.census().kinds[place];
    }
    return !isStopped;
}

void Surveyor::addRow(const olmhost::Row& row) {
    // The items of one folder mostly come together.
    const std::u16string_view folder = nameParts(row).folder;
    if (folder != folderAtHand) {
        endFolder();
        folderAtHand = folder;
    }
    ++itemsAtHand;

    const std::optional<olmhost::ItemKind> itemKind = session.documentKind();
    if (!itemKind) {
        return;
    }
    KindSurvey& kind = report.kinds[static_cast<std::size_t>(*itemKind)];
    ++kind.listed;
    if (const std::optional<Moment> moment = momentOf(row)) {
        kind.earliest = std::min(kind.earliest.value_or(*moment), *moment);
        kind.latest = std::max(kind.latest.value_or(*moment), *moment);
    }
}

void Surveyor::endFolder() {
    if (itemsAtHand == 0) {
        return;
    }
    std::ranges::replace(folderAtHand, u'\0', u'/');
    std::string path;
    appendUtf8(path, folderAtHand);
    report.folders.add(path, itemsAtHand);
    itemsAtHand = 0;
}

void Surveyor::addAttachment(const olmhost::NamedAttachment& attachment) {
    const std::optional<std::uint64_t> entry = session.findEntry(attachment.entryName);
    if (!entry) {
        ++report.missingAttachments;
        return;
    }
    const std::string_view name =
        attachment.name.empty() ? session.entryName(*entry) : attachment.name;
    AttachmentReport added = {"", session.entrySize(*entry).size, *entry};
    std::vector<AttachmentReport>& largest = report.largest;
    const auto place = std::ranges::lower_bound(largest, added, isLarger);
    const auto offset = static_cast<std::size_t>(place - largest.begin());
    // Several items may name one entry.
    const bool isKnown = place != largest.end() && place->entry == *entry;
    if (isKnown || offset == ArchiveSurvey::mostAttachments) {
        return;
    }
    added.name = name;
    largest.insert(place, std::move(added));
    if (largest.size() > ArchiveSurvey::mostAttachments) {
        largest.pop_back();
    }
}

void Surveyor::addEntry(std::uint64_t entry, bool isChecking) {
    const std::string_view name = session.entryName(entry);
    const olmhost::EntrySize size = session.entrySize(entry);
    report.unpackedSize += size.size;
    if (size.isEncrypted) {
        ++report.encryptedEntries;
        if (report.encrypted.size() < ArchiveSurvey::mostEncrypted) {
            report.encrypted.push_back(reportOn(entry, ""));
        }
    }
    if (!name.ends_with('/')) {
        if (isChecking) {
            session.check(entry);
        }
        return;
    }
    ++report.directories;
    if (!name.ends_with(attachmentFolder)) {
        report.folders.add(name, 0);
    }
}

// The folders at the top are accounts, but for the one that holds a folder for each of the others.
void Surveyor::addAccounts() {
    for (const auto& [name, folder] : report.folders.root().children) {
        if (name != accountsFolder) {
            report.accounts.emplace_back(name, folder.total);
            continue;
        }
        for (const auto& [account, below] : folder.children) {
            std::string path = name;
            report.accounts.emplace_back(path.append("/").append(account), below.total);
        }
    }
}

void Surveyor::addNotes() {
    for (const olmhost::DocumentNote& note : session.census().notes) {
        report.documents.push_back({note, std::string(session.entryName(note.entryIndex))});
    }
    for (const olmhost::EntryFault& fault : session.faults()) {
        report.faults.push_back(reportOn(fault.entryIndex, fault.text));
    }
}

EntryReport Surveyor::reportOn(std::uint64_t entry, const std::string& text) const {
    if (entry >= session.entryCount()) {
        return {std::nullopt, "", text};
    }
    return {entry, std::string(session.entryName(entry)), text};
}

} // namespace olmkit
