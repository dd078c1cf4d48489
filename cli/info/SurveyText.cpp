#include "cli/info/SurveyText.h"

#include <algorithm>
#include <string_view>

#include "cli/info/NumberText.h"
#include "cli/terminal/CellText.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr unsigned numberCells = 11; // cells
constexpr std::size_t kindRoom = 11;
constexpr std::size_t momentRoom = 20;

void appendLeft(std::string& out, std::string_view text, std::size_t room) {
    out += text;
    out.append(room - std::min(room, text.size()) + columnGap, ' ');
}

void appendNumber(std::string& out, std::string_view text) {
    appendRight(out, text, numberCells);
    out.append(columnGap, ' ');
}

void endLine(std::string& out) {
    out.erase(out.find_last_not_of(' ') + 1);
    out += '\n';
}

void appendHead(std::string& out, const ArchiveSurvey& report) {
    appendPrintable(out, report.archive);
    out += ": " + counted(report.size, "byte", "bytes") + "\n" +
           counted(report.entries, "entry", "entries") + ", " +
           counted(report.directories, "directory", "directories") + " among them; " +
           counted(report.unpackedSize, "byte", "bytes") + " unpacked\n";
}

void appendKinds(std::string& out, const ArchiveSurvey& report) {
    const bool isEmpty = std::ranges::all_of(
        report.kinds, [](const KindSurvey& kind) { return kind.counted == olmhost::KindCensus(); });
    if (isEmpty) {
        out += "\nno items\n";
        return;
    }
    out += '\n';
    appendLeft(out, "KIND", kindRoom);
    appendNumber(out, "DOCUMENTS");
    appendNumber(out, "ITEMS");
    appendLeft(out, "EARLIEST", momentRoom);
    out += "LATEST\n";
    for (std::size_t place = 0; place < report.kinds.size(); ++place) {
        const KindSurvey& kind = report.kinds[place];
        if (kind.counted == olmhost::KindCensus()) {
            continue;
        }
        appendLeft(out, olmhost::nameOf(static_cast<olmhost::ItemKind>(place)), kindRoom);
        appendNumber(out, grouped(kind.counted.documents));
        appendNumber(out, grouped(kind.counted.items));
        appendLeft(out, kind.earliest ? momentText(*kind.earliest) : "", momentRoom);
        out += kind.latest ? momentText(*kind.latest) : "";
        endLine(out);
    }
}

void appendAccounts(std::string& out, const ArchiveSurvey& report) {
    if (report.accounts.empty()) {
        return;
    }
    out += '\n';
    appendNumber(out, "ITEMS");
    out += "ACCOUNT\n";
    for (const auto& [folder, items] : report.accounts) {
        appendNumber(out, grouped(items));
        appendPrintable(out, folder);
        out += '\n';
    }
}

void appendFolder(std::string& out, const std::string& name, const Folder& folder,
                  std::size_t depth) {
    appendNumber(out, grouped(folder.own));
    appendNumber(out, grouped(folder.total));
    out.append(depth * columnGap, ' ');
    appendPrintable(out, name);
    out += '\n';
    for (const auto& [childName, child] : folder.children) {
        appendFolder(out, childName, child, depth + 1);
    }
}

void appendFolders(std::string& out, const ArchiveSurvey& report) {
    const Folder& top = report.folders.root();
    if (top.children.empty()) {
        return;
    }
    out += '\n';
    appendNumber(out, "ITEMS");
    appendNumber(out, "WITH BELOW");
    out += "FOLDER\n";
    if (top.own > 0) {
        appendNumber(out, grouped(top.own));
        appendNumber(out, grouped(top.own));
        out += "(in no folder)\n";
    }
    for (const auto& [name, child] : top.children) {
        appendFolder(out, name, child, 0);
    }
}

void appendAttachments(std::string& out, const ArchiveSurvey& report) {
    const std::string count = attachmentCount(report);
    if (count.empty()) {
        return;
    }
    out += "\n" + count + "\n";
    if (report.largest.empty()) {
        return;
    }
    appendNumber(out, "BYTES");
    appendNumber(out, "ENTRY");
    out += "LARGEST\n";
    for (const AttachmentReport& attachment : report.largest) {
        appendNumber(out, grouped(attachment.size));
        appendNumber(out, std::to_string(attachment.entry));
        appendPrintable(out, attachment.name);
        out += '\n';
    }
}

// "  entry 7 (name): text", or what of it there is.
void appendEntry(std::string& out, std::optional<std::uint64_t> entry, std::string_view name,
                 std::string_view text) {
    std::string line = "  ";
    if (entry) {
        line += "entry " + std::to_string(*entry) + " (" + std::string(name) + ")";
        line += text.empty() ? "" : ": ";
    }
    appendPrintable(out, line.append(text));
    out += '\n';
}

// Documents that gave no rows, or not as many as they have items. Every archive has one of
// categories.
void appendDocuments(std::string& out, const ArchiveSurvey& report) {
    bool isFirst = true;
    for (const DocumentReport& document : report.documents) {
        if (document.note.finding == olmhost::DocumentFinding::Categories) {
            continue;
        }
        if (isFirst) {
            out += "\nwithout items in the list, or not with all of them:\n";
            isFirst = false;
        }
        appendEntry(out, document.note.entryIndex, document.entryName, document.note.text);
    }
}

void appendDamage(std::string& out, const ArchiveSurvey& report) {
    if (report.encryptedEntries > 0) {
        out += '\n';
        out += counted(report.encryptedEntries, "entry is", "entries are") + " encrypted" +
               (report.encryptedEntries > report.encrypted.size() ? ", the first ones:\n" : ":\n");
        for (const EntryReport& entry : report.encrypted) {
            appendEntry(out, entry.entry, entry.entryName, "");
        }
    }
    if (!report.faults.empty()) {
        out += "\ndamaged or not readable:\n";
        for (const EntryReport& fault : report.faults) {
            appendEntry(out, fault.entry, fault.entryName, fault.text);
        }
    }
    if (report.isChecked) {
        out += report.faults.empty() ? "\nevery entry was read, and is whole\n"
                                     : "\nevery entry was read\n";
    }
}

} // namespace

std::string attachmentCount(const ArchiveSurvey& report) {
    std::uint64_t named = 0;
    std::uint64_t unnamed = 0;
    for (const KindSurvey& kind : report.kinds) {
        named += kind.counted.attachments;
        unnamed += kind.counted.unnamedAttachments;
    }
    if (named + unnamed == 0) {
        return "";
    }
    std::string text = counted(named + unnamed, "attachment", "attachments");
    if (report.missingAttachments > 0) {
        text += ", " + grouped(report.missingAttachments) + " of them missing";
    }
    if (unnamed > 0) {
        text += ", " + grouped(unnamed) + " without the name of a file";
    }
    return text;
}

void appendFindings(std::string& out, const ArchiveSurvey& report) {
    appendDocuments(out, report);
    appendDamage(out, report);
}

void appendReport(std::string& out, const ArchiveSurvey& report) {
    appendHead(out, report);
    appendKinds(out, report);
    appendAccounts(out, report);
    appendFolders(out, report);
    appendAttachments(out, report);
    appendFindings(out, report);
}

} // namespace olmkit
