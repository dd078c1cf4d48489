#include "cli/report/ReportPage.h"

#include <algorithm>

#include "cli/info/NumberText.h"
#include "cli/info/SurveyText.h"
#include "cli/report/Markup.h"
#include "cli/report/PageParts.h"
#include "cli/terminal/ProgramVersion.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::size_t maxCorrespondents = 200;
constexpr std::string_view markStart = "{{";
constexpr std::string_view markEnd = "}}";

void appendCount(std::string& out, std::uint64_t number) {
    out += "<td class=\"n\">" + grouped(number) + "</td>";
}

// Returns YYYY-MM-DD, or nothing.
std::string dayText(const std::optional<Moment>& moment) {
    constexpr std::size_t dateSize = 10;
    return moment ? momentText(*moment).substr(0, dateSize) : "";
}

} // namespace

void ReportPage::begin() {
    rest = pageTemplate;
    writeUpTo("rows");
}

bool ReportPage::add(const olmhost::Row& row, std::optional<olmhost::ItemKind> kind) {
    rows.write(file.buffer(), row, kind);
    return file.endRecord();
}

void ReportPage::finish(const ArchiveSurvey& found) {
    survey = &found;
    bars = rows.timeLine().bars();
    people = rows.correspondents().busiest(maxCorrespondents);
    rows.end(file.buffer());
    writeUpTo("");
}

// Writes the template up to the placeholder `mark`, which is skipped; those before it are replaced.
void ReportPage::writeUpTo(std::string_view mark) {
    while (!rest.empty()) {
        const std::size_t start = std::min(rest.find(markStart), rest.size());
        file.buffer() += rest.substr(0, start);
        rest.remove_prefix(start);
        if (rest.empty()) {
            return;
        }
        const std::size_t end = rest.find(markEnd);
        const std::string_view part = rest.substr(markStart.size(), end - markStart.size());
        rest.remove_prefix(end + markEnd.size());
        if (part == mark) {
            return;
        }
        write(part);
        file.endRecord();
    }
}

void ReportPage::write(std::string_view part) {
    std::string& out = file.buffer();
    if (part == "name") {
        appendHtml(out, name);
    } else if (part == "style") {
        out += pageStyle;
    } else if (part == "script") {
        out += pageScript;
    } else if (part == "version") {
        out += programVersion;
    } else if (part == "facts") {
        writeFacts();
    } else if (part == "findings") {
        writeFindings();
    } else if (part == "kinds") {
        writeKinds();
    } else if (part == "folders") {
        writeFolders();
    } else if (part == "times") {
        writeTimes();
    } else if (part == "people") {
        writePeople();
    } else if (part == "tables") {
        writeTables();
    }
}

void ReportPage::writeFacts() {
    std::uint64_t inDocuments = 0;
    std::optional<Moment> earliest;
    std::optional<Moment> latest;
    for (const KindSurvey& kind : survey->kinds) {
        inDocuments += kind.counted.items;
        if (kind.earliest) {
            earliest = std::min(earliest.value_or(*kind.earliest), *kind.earliest);
            latest = std::max(latest.value_or(*kind.latest), *kind.latest);
        }
    }
    std::string& out = file.buffer();
    out += "<li>" + counted(rows.count(), "item", "items");
    if (inDocuments > rows.count()) {
        out += " of the " + grouped(inDocuments) + " in the archive";
    }
    out += "</li>\n";
    if (earliest) {
        out += "<li>" + dayText(earliest) + " to " + dayText(latest) + "</li>\n";
    }
    if (const std::string count = attachmentCount(*survey); !count.empty()) {
        out += "<li>" + count + "</li>\n";
    }
    out += "<li>" + counted(survey->size, "byte", "bytes") + "</li>\n";
    out += "<li>" + counted(survey->entries, "entry", "entries") + "</li>\n";
}

void ReportPage::writeFindings() {
    std::string findings;
    appendFindings(findings, *survey);
    std::string& out = file.buffer();
    if (!survey->isDamaged()) {
        out += "<p class=\"whole\">All documents are complete, and no attachment is missing.</p>\n";
    } else if (survey->missingAttachments > 0) {
        out += "<p class=\"broken\">" +
               counted(survey->missingAttachments, "attachment is", "attachments are") +
               " missing from the archive.</p>\n";
    }
    if (findings.empty()) {
        return;
    }
    out += survey->isDamaged() ? "<details class=\"broken\" open>" : "<details>";
    out += survey->isDamaged() ? "<summary>Damaged or incomplete</summary>\n<pre>"
                               : "<summary>Documents without items</summary>\n<pre>";
    std::string_view lines = std::string_view(findings).substr(findings.find_first_not_of('\n'));
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        appendIsolated(out, lines.substr(0, end));
        out += '\n';
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    out += "</pre>\n</details>\n";
}

void ReportPage::writeKinds() {
    const std::vector<std::string> titles = ReportRows::kindTitles();
    std::string& out = file.buffer();
    for (std::size_t place = 0; place < survey->kinds.size(); ++place) {
        const KindSurvey& kind = survey->kinds[place];
        if (kind.listed == 0 && kind.counted.items == 0) {
            continue;
        }
        out += "<tr><th scope=\"row\" data-kind=\"" + std::to_string(place) + "\">" +
               titles[place] + "</th>";
        appendCount(out, kind.listed);
        out +=
            "<td>" + dayText(kind.earliest) + "</td><td>" + dayText(kind.latest) + "</td></tr>\n";
    }
}

void ReportPage::writeFolders() {
    const Folder& root = survey->folders.root();
    if (root.own > 0) {
        places.emplace(&root, places.size());
        file.buffer() += "<li><span class=\"f\"><span>(in no folder)</span></span> <span "
                         "class=\"n\">" +
                         grouped(root.own) + "</span></li>\n";
    }
    for (const auto& [childName, child] : root.children) {
        writeFolder(childName, child);
    }
}

// Never called deeper than FolderTree::maxDepth.
void ReportPage::writeFolder(const std::string& folderName, const Folder& folder) {
    places.emplace(&folder, places.size());
    std::string& out = file.buffer();
    out += folder.total == 0 ? "<li class=\"none\">" : "<li>";
    out += "<span class=\"f\">";
    appendIsolated(out, folderName);
    out += "</span> <span class=\"n\">" + grouped(folder.total) + "</span>";
    if (!folder.children.empty()) {
        out += "\n<ul>\n";
        for (const auto& [childName, child] : folder.children) {
            writeFolder(childName, child);
        }
        out += "</ul>\n";
    }
    out += "</li>\n";
    file.endRecord();
}

void ReportPage::writeTimes() {
    for (const TimeBar& bar : bars) {
        if (bar.items > 0) {
            file.buffer() += "<tr><th scope=\"row\">" + bar.label + "</th>";
            appendCount(file.buffer(), bar.items);
            file.buffer() += "</tr>\n";
        }
    }
}

void ReportPage::writePeople() {
    std::string& out = file.buffer();
    for (const Correspondent& one : people) {
        out += "<tr><th scope=\"row\">";
        appendIsolated(out, one.name);
        out += "</th>";
        appendCount(out, one.sent);
        appendCount(out, one.received);
        out += "</tr>\n";
    }
}

// Writes the tables for the script, each in the order of its elements in the page.
void ReportPage::writeTables() {
    JsonObject tables;
    tables["items"] = rows.count();
    tables["kinds"] = ReportRows::kindTitles();
    tables["folders"] = JsonObject::array(); // by number: position in the page, path
    for (const std::string& path : rows.folders()) {
        tables["folders"].push_back({places.at(survey->folders.find(path)), printableText(path)});
    }
    tables["bars"] = JsonObject::array();
    for (const TimeBar& bar : bars) {
        tables["bars"].push_back({bar.label, bar.begin, bar.end, bar.items});
    }
    tables["people"] = JsonObject::array();
    for (const Correspondent& one : people) {
        tables["people"].push_back(one.name);
    }
    appendScriptData(file.buffer(), tables);
}

} // namespace olmkit
