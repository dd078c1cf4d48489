#include "cli/info/SurveyText.h"

#include <algorithm>
#include <string_view>

#include "cli/info/NumberText.h"
#include "cli/terminal/CellText.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

// Widths of columns, in cells.
constexpr unsigned numberWidth = 11;
constexpr std::size_t kindWidth = 11;
constexpr std::size_t momentWidth = 20;

void appendLeft(std::string& out, std::string_view text, std::size_t width) {
    out += text;
    out.append(width - std::min(width, text.size()) + columnGap, ' ');
}

void appendNumber(std::string& out, std::string_view text) {
    appendRight(out, text, numberWidth);
    out.append(columnGap, ' ');
}

void endLine(std::string& out) {
    out.erase(out.find_last_not_of(' ') + 1);
    out += '\n';
}

void appendHead(std::string& out, const ArchiveSurvey& survey) {
    appendPrintable(out, survey.archive);
    out += ": " + counted(survey.size, "byte", "bytes") + "\n" +
           counted(survey.entries, "entry", "entries") + " (" +
           counted(survey.directories, "directory", "directories") + "), " +
           counted(survey.unpackedSize, "byte", "bytes") + " uncompressed\n";
}

void appendKinds(std::string& out, const ArchiveSurvey& survey) {
    const bool isEmpty = std::ranges::all_of(
        survey.kinds, [](const KindSurvey& kind) { return kind.counted == olmhost::KindCensus(); });
    if (isEmpty) {
        out += "\nno items\n";
        return;
    }
    out += '\n';
    appendLeft(out, "KIND", kindWidth);
    appendNumber(out, "DOCUMENTS");
    appendNumber(out, "ITEMS");
    appendLeft(out, "EARLIEST", momentWidth);
    out += "LATEST\n";
    for (std::size_t place = 0; place < survey.kinds.size(); ++place) {
        const KindSurvey& kind = survey.kinds[place];
        if (kind.counted == olmhost::KindCensus()) {
            continue;
        }
        appendLeft(out, olmhost::nameOf(static_cast<olmhost::ItemKind>(place)), kindWidth);
        appendNumber(out, grouped(kind.counted.documents));
        appendNumber(out, grouped(kind.counted.items));
        appendLeft(out, kind.earliest ? utcText(*kind.earliest) : "", momentWidth);
        out += kind.latest ? utcText(*kind.latest) : "";
        endLine(out);
    }
}

void appendAccounts(std::string& out, const ArchiveSurvey& survey) {
    if (survey.accounts.empty()) {
        return;
    }
    out += '\n';
    appendNumber(out, "ITEMS");
    out += "ACCOUNT\n";
    for (const auto& [folder, items] : survey.accounts) {
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

void appendFolders(std::string& out, const ArchiveSurvey& survey) {
    const Folder& top = survey.folders.root();
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

void appendAttachments(std::string& out, const ArchiveSurvey& survey) {
    const std::string count = attachmentCount(survey);
    if (count.empty()) {
        return;
    }
    out += "\n" + count + "\n";
    if (survey.largest.empty()) {
        return;
    }
    appendNumber(out, "BYTES");
    appendNumber(out, "ENTRY");
    out += "LARGEST\n";
    for (const FoundAttachment& attachment : survey.largest) {
        appendNumber(out, grouped(attachment.size));
        appendNumber(out, std::to_string(attachment.entry));
        appendPrintable(out, attachment.name);
        out += '\n';
    }
}

// Appends "  entry 7 (name): text", without the parts that are missing.
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

// Lists the documents without rows or with a different number of items. The one of categories,
// which every archive has, is left out.
void appendDocuments(std::string& out, const ArchiveSurvey& survey) {
    bool isFirst = true;
    for (const NotedDocument& document : survey.documents) {
        if (document.note.finding == olmhost::DocumentFinding::Categories) {
            continue;
        }
        if (isFirst) {
            out += "\ndocuments without items, or with items that are not listed:\n";
            isFirst = false;
        }
        appendEntry(out, document.note.entryIndex, document.entryName, document.note.text);
    }
}

void appendDamage(std::string& out, const ArchiveSurvey& survey) {
    if (survey.encryptedEntries > 0) {
        out += '\n';
        out += counted(survey.encryptedEntries, "entry is", "entries are") + " encrypted";
        if (survey.encryptedEntries > survey.encrypted.size()) {
            out += "; the first " + grouped(survey.encrypted.size());
        }
        out += ":\n";
        for (const EntryFinding& entry : survey.encrypted) {
            appendEntry(out, entry.entry, entry.entryName, "");
        }
    }
    if (!survey.faults.empty()) {
        out += "\ndamaged or unreadable:\n";
        for (const EntryFinding& fault : survey.faults) {
            appendEntry(out, fault.entry, fault.entryName, fault.text);
        }
    }
    if (survey.isChecked) {
        out += survey.faults.empty() ? "\nevery entry was read; none is damaged\n"
                                     : "\nevery entry was read\n";
    }
}

} // namespace

std::string attachmentCount(const ArchiveSurvey& survey) {
    if (survey.attachments() == 0) {
        return "";
    }
    std::string text = counted(survey.attachments(), "attachment", "attachments");
    if (survey.missingAttachments > 0) {
        text += ", " + grouped(survey.missingAttachments) + " missing from the archive";
    }
    if (const std::uint64_t unnamed = survey.unnamedAttachments(); unnamed > 0) {
        text += ", " + grouped(unnamed) + " without a file name";
    }
    return text;
}

void appendFindings(std::string& out, const ArchiveSurvey& survey) {
    appendDocuments(out, survey);
    appendDamage(out, survey);
}

void appendSurvey(std::string& out, const ArchiveSurvey& survey) {
    appendHead(out, survey);
    appendKinds(out, survey);
    appendAccounts(out, survey);
    appendFolders(out, survey);
    appendAttachments(out, survey);
    appendFindings(out, survey);
}

} // namespace olmkit
