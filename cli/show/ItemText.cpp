#include "cli/show/ItemText.h"

#include <algorithm>
#include <charconv>

#include "cli/terminal/CellText.h"
#include "cli/terminal/Text.h"
#include "host/message/PropertyNames.h"

namespace olmkit {

namespace {

constexpr unsigned minValueWidth = 40; // with fewer cells, long values go below their row
constexpr unsigned valueIndent = 4;    // of values below their row

std::string printable(std::string_view text) {
    std::string shown;
    appendPrintable(shown, text);
    return shown;
}

// Returns the printable form of a JSON text; empty for null.
std::string textOf(const JsonObject& text) {
    return text.is_string() ? printable(text.get_ref<const std::string&>()) : "";
}

// Returns "Mara <mara@x>", or the part that is known.
std::string personText(const JsonObject& name, const JsonObject& address) {
    const std::string shownName = textOf(name);
    const std::string shownAddress = textOf(address);
    if (shownAddress.empty() || shownName == shownAddress) {
        return shownName + (shownName.empty() && shownAddress.empty() ? "(no name)" : "");
    }
    return shownName.empty() ? shownAddress : shownName + " <" + shownAddress + ">";
}

std::string sizeText(const JsonObject& size) {
    return size.dump() + (size == 1 ? " byte" : " bytes");
}

std::string binaryText(const JsonObject& value) {
    if (const auto found = value.find("one_off"); found != value.end()) {
        return personText(found->at("display_name"), found->at("address")) + " (" +
               textOf(found->at("address_type")) + ")";
    }
    const auto& start = value.at("start").get_ref<const std::string&>();
    std::string digits;
    for (std::size_t place = 0; place < start.size(); place += 2) {
        digits += (place == 0 ? ": " : " ") + start.substr(place, 2);
    }
    const bool isWhole = value.at("size").get<std::uint64_t>() * 2 == start.size();
    return sizeText(value.at("size")) + digits + (isWhole ? "" : " ...");
}

std::string numberText(const JsonObject& value, const JsonObject& property) {
    std::string text = value.dump();
    std::uint16_t id = 0;
    const auto& tag = property.at("tag").get_ref<const std::string&>(); // "0x0E070003"
    std::from_chars(tag.data() + 2, tag.data() + 6, id, 16);
    if (value.is_number_integer() && property.at("set").is_null() && olmhost::isBitField(id)) {
        std::array<char, 8> digits = {};
        const auto bits = static_cast<std::uint32_t>(value.get<std::int64_t>());
        const auto end = std::to_chars(digits.begin(), digits.end(), bits, 16).ptr;
        text.append(" (0x").append(digits.begin(), end).append(")");
    }
    return text;
}

std::string valueText(const JsonObject& value, const JsonObject& property) {
    if (value.is_string()) {
        return textOf(value);
    }
    return value.is_object() ? binaryText(value) : numberText(value, property);
}

std::vector<std::string> valueTexts(const JsonObject& property) {
    if (const auto fault = property.find("fault"); fault != property.end()) {
        return {"(no value: " + fault->get<std::string>() + ")"};
    }
    const JsonObject& value = property.at("value");
    if (!value.is_array()) {
        return {valueText(value, property)};
    }
    std::vector<std::string> texts;
    for (const JsonObject& one : value) {
        texts.push_back(valueText(one, property));
    }
    return texts;
}

// Returns "String" for "PtypString".
std::string typeText(const JsonObject& property) {
    const std::string type = property.at("type").get<std::string>();
    constexpr std::string_view start = "Ptyp";
    return type.starts_with(start) ? type.substr(start.size()) : type;
}

std::string orMark(const JsonObject& text) {
    return text.is_null() ? "-" : textOf(text);
}

// Returns a value of a recurrence as one line: "-" for null, members separated by commas.
std::string lineOf(const JsonObject& value) {
    if (value.is_null()) {
        return "-";
    }
    if (!value.is_object()) {
        return value.is_string() ? textOf(value) : value.dump();
    }
    std::string line;
    for (const auto& member : value.items()) {
        line += (line.empty() ? "" : ", ") + member.key() + " " + lineOf(member.value());
    }
    return line;
}

std::vector<std::string> linesOf(const JsonObject& value) {
    if (!value.is_array()) {
        return {lineOf(value)};
    }
    std::vector<std::string> lines;
    for (const JsonObject& one : value) {
        lines.push_back(lineOf(one));
    }
    return lines.empty() ? std::vector<std::string>{"-"} : lines;
}

} // namespace

void ItemText::write(const JsonObject& described, std::string_view entryName) {
    std::string title = described.at("index").is_null() ? std::string("Item")
                                                        : "Item " + described.at("index").dump();
    title += ": " + textOf(described.at("class")) + ", item " + described.at("item").dump() +
             " of entry " + described.at("entry").dump() + " (" + printable(entryName) + ")";
    writeWrapped(title, 0, valueIndent);
    writeHeading("Properties");
    writeProperties(described.at("properties"), columnGap);
    writeRecipients(described.at("recipients"));
    writeAttachments(described.at("attachments"));
    writeRecurrence(described.at("recurrence"));
}

void ItemText::writeHeading(std::string_view text) {
    out += "\n";
    writeWrapped(text, 0, valueIndent);
}

void ItemText::writeProperties(const JsonObject& properties, unsigned indent) {
    std::vector<Row> plain;
    std::vector<Row> named;
    for (const JsonObject& property : properties) {
        Row row;
        row.cells = {textOf(property.at("tag")), orMark(property.at("name"))};
        if (!property.at("set").is_null()) {
            row.cells.push_back(textOf(property.at("set")));
            row.cells.push_back(textOf(property.at("id")));
        }
        row.cells.push_back(typeText(property));
        row.values = valueTexts(property);
        (property.at("set").is_null() ? plain : named).push_back(std::move(row));
    }
    writeTable(plain, indent);
    if (!named.empty()) {
        writeHeading("Named properties");
        writeTable(named, indent);
    }
}

void ItemText::writeTable(const std::vector<Row>& rows, unsigned indent) {
    std::vector<unsigned> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.cells.size()));
        for (std::size_t column = 0; column < row.cells.size(); ++column) {
            widths[column] = std::max(widths[column], cellsOf(row.cells[column]));
        }
    }
    for (const Row& row : rows) {
        writeRow(row, widths, indent);
    }
}

void ItemText::writeRow(const Row& row, const std::vector<unsigned>& widths, unsigned indent) {
    std::string line(indent, ' ');
    unsigned used = indent;
    for (std::size_t column = 0; column < row.cells.size(); ++column) {
        const unsigned cells = cellsOf(row.cells[column]);
        line += row.cells[column];
        line.append(widths[column] - cells + columnGap, ' ');
        used += widths[column] + columnGap;
    }
    const auto fits = [&](const std::string& value) { return used + cellsOf(value) <= width; };
    const bool isBeside =
        width == 0 || used + minValueWidth <= width || std::ranges::all_of(row.values, fits);
    const unsigned start = isBeside ? used : indent + valueIndent;
    if (!isBeside || row.values.empty()) {
        line.erase(line.find_last_not_of(' ') + 1);
        writeWrapped(line, 0, indent + valueIndent);
        line.clear();
    }
    for (const std::string& value : row.values) {
        line.resize(std::max<std::size_t>(line.size(), start), ' ');
        if (value.empty()) {
            line.erase(line.find_last_not_of(' ') + 1);
            out += line;
            out += "\n";
        } else {
            out += line;
            writeWrapped(value, start, start);
        }
        line.clear();
    }
}

// Writes text and a line end. `start` cells of the first line are taken; continuation lines are
// indented by `indent` cells. Lines break at blanks where possible.
void ItemText::writeWrapped(std::string_view text, unsigned start, unsigned indent) {
    if (width == 0) {
        out += text;
        out += "\n";
        return;
    }
    const unsigned last = std::max(width, indent + 2); // a wide character fits any line
    unsigned used = start;
    std::size_t blank = std::string::npos; // the last one in `out` on this line
    unsigned usedToBlank = 0;
    while (!text.empty()) {
        const char32_t codePoint = takeCodePoint(text);
        const unsigned cells = cellWidth(codePoint);
        if (used + cells > last) {
            std::string moved;
            if (codePoint != ' ' && blank != std::string::npos) {
                moved = out.substr(blank + 1);
                out.resize(blank);
                used -= usedToBlank;
            } else {
                used = 0;
            }
            out += '\n';
            out.append(indent, ' ');
            out += moved;
            used += indent;
            blank = std::string::npos;
            if (codePoint == ' ') {
                continue; // the line break replaces it
            }
        }
        if (codePoint == ' ' && used > indent) {
            blank = out.size();
            usedToBlank = used + cells;
        }
        appendCodePoint(out, codePoint);
        used += cells;
    }
    out += "\n";
}

void ItemText::writeRecipients(const JsonObject& recipients) {
    for (std::size_t i = 0; i < recipients.size(); ++i) {
        const JsonObject& recipient = recipients[i];
        const std::string role = textOf(recipient.at("type"));
        writeHeading("Recipient " + std::to_string(i) + (role.empty() ? "" : ", " + role) + ": " +
                     personText(recipient.at("name"), recipient.at("address")));
        writeProperties(recipient.at("properties"), columnGap);
    }
}

void ItemText::writeAttachments(const JsonObject& attachments) {
    for (std::size_t i = 0; i < attachments.size(); ++i) {
        const JsonObject& attachment = attachments[i];
        const std::string name = textOf(attachment.at("name"));
        std::string title =
            "Attachment " + std::to_string(i) + ": " + (name.empty() ? "(no name)" : name);
        if (attachment.at("size").is_null()) {
            title += ", no contents";
        } else {
            title += ", " + sizeText(attachment.at("size")) + ", SHA-256 " +
                     attachment.at("sha256").get<std::string>();
        }
        writeHeading(title);
        writeProperties(attachment.at("properties"), columnGap);
    }
}

void ItemText::writeRecurrence(const JsonObject& recurrence) {
    if (recurrence.is_null()) {
        return;
    }
    writeHeading("Recurrence");
    std::vector<Row> rows;
    for (const auto& member : recurrence.items()) {
        std::string key = member.key();
        std::ranges::replace(key, '_', ' ');
        rows.push_back({{key}, linesOf(member.value())});
    }
    writeTable(rows, columnGap);
}

} // namespace olmkit
