#include "cli/info/Surveyor.h"

#include <algorithm>
#include <string_view>

#include "cli/rows/ItemRow.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

// Holds a folder for each account, except the local one.
constexpr std::string_view accountsFolder = "Accounts";

// Holds the contents of attachments, no items.
constexpr std::string_view attachmentFolder = "com.microsoft.__Attachments/";

bool isLarger(const FoundAttachment& left, const FoundAttachment& right) {
    return left.size != right.size ? left.size > right.size : left.entry < right.entry;
}

} // namespace

ArchiveSurvey Surveyor::survey(bool isChecking) {
    if (!listItems()) {
        return std::move(found);
    }
    found.size = session.archiveSize();
    found.entries = session.entryCount();
    found.isChecked = isChecking;
    for (std::uint64_t entry = 0; entry < found.entries; ++entry) {
        addEntry(entry, isChecking);
    }
    found.folders.total();
    addAccounts();
    addNotes();
    return std::move(found);
}

// Returns whether the archive was listed to its end.
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
    for (std::size_t place = 0; place < found.kinds.size(); ++place) {
        found.kinds[place].counted = session.census().kinds[place];
    }
    return !isStopped;
}

void Surveyor::addRow(const olmhost::Row& row) {
    // Items of one folder usually come in succession.
    const std::u16string_view folder = nameParts(row).folder;
    if (folder != currentFolder) {
        endFolder();
        currentFolder = folder;
    }
    ++itemsInFolder;

    const std::optional<olmhost::ItemKind> itemKind = session.documentKind();
    if (!itemKind) {
        return;
    }
    KindSurvey& kind = found.kinds[static_cast<std::size_t>(*itemKind)];
    ++kind.listed;
    if (const std::optional<Moment> moment = momentOf(row)) {
        kind.earliest = std::min(kind.earliest.value_or(*moment), *moment);
        kind.latest = std::max(kind.latest.value_or(*moment), *moment);
    }
}

void Surveyor::endFolder() {
    if (itemsInFolder == 0) {
        return;
    }
    std::ranges::replace(currentFolder, u'\0', u'/');
    std::string path;
    appendUtf8(path, currentFolder);
    found.folders.add(path, itemsInFolder);
    itemsInFolder = 0;
}

void Surveyor::addAttachment(const olmhost::NamedAttachment& attachment) {
    const std::optional<std::uint64_t> entry = session.findEntry(attachment.entryName);
    if (!entry) {
        ++found.missingAttachments;
        return;
    }
    const std::string_view name =
        attachment.name.empty() ? session.entryName(*entry) : attachment.name;
    FoundAttachment added = {"", session.entrySize(*entry).size, *entry};
    std::vector<FoundAttachment>& largest = found.largest;
    const auto place = std::ranges::lower_bound(largest, added, isLarger);
    const auto offset = static_cast<std::size_t>(place - largest.begin());
    // Several items may name the same entry.
    const bool isKnown = place != largest.end() && place->entry == *entry;
    if (isKnown || offset == ArchiveSurvey::maxAttachments) {
        return;
    }
    added.name = name;
    largest.insert(place, std::move(added));
    if (largest.size() > ArchiveSurvey::maxAttachments) {
        largest.pop_back();
    }
}

void Surveyor::addEntry(std::uint64_t entry, bool isChecking) {
    const std::string_view name = session.entryName(entry);
    const olmhost::EntrySize size = session.entrySize(entry);
    found.unpackedSize += size.size;
    if (size.isEncrypted) {
        ++found.encryptedEntries;
        if (found.encrypted.size() < ArchiveSurvey::maxEncrypted) {
            found.encrypted.push_back(entryOf(entry, ""));
        }
    }
    if (!name.ends_with('/')) {
        if (isChecking) {
            session.check(entry);
        }
        return;
    }
    ++found.directories;
    if (!name.ends_with(attachmentFolder)) {
        found.folders.add(name, 0);
    }
}

// The top-level folders are accounts, except `accountsFolder`, which holds the others.
void Surveyor::addAccounts() {
    for (const auto& [name, folder] : found.folders.root().children) {
        if (name != accountsFolder) {
            found.accounts.emplace_back(name, folder.total);
            continue;
        }
        for (const auto& [account, below] : folder.children) {
            std::string path = name;
            found.accounts.emplace_back(path.append("/").append(account), below.total);
        }
    }
}

void Surveyor::addNotes() {
    for (const olmhost::DocumentNote& note : session.census().notes) {
        found.documents.push_back({note, std::string(session.entryName(note.entryIndex))});
    }
    for (const olmhost::EntryFault& fault : session.faults()) {
        found.faults.push_back(entryOf(fault.entryIndex, fault.text));
    }
}

EntryFinding Surveyor::entryOf(std::uint64_t entry, const std::string& text) const {
    if (entry >= session.entryCount()) {
        return {std::nullopt, "", text};
    }
    return {entry, std::string(session.entryName(entry)), text};
}

} // namespace olmkit
