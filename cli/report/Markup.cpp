#include "cli/report/Markup.h"

#include <algorithm>

#include "cli/terminal/Text.h"

namespace olmkit {

std::string printableText(std::string_view text) {
    std::string printable;
    appendPrintable(printable, text);
    return printable;
}

void appendHtml(std::string& out, std::string_view text) {
    for (const char byte : printableText(text)) {
        switch (byte) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&#39;";
            break;
        default:
            out += byte;
        }
    }
}

void appendIsolated(std::string& out, std::string_view text) {
    out += "<bdi>";
    appendHtml(out, text);
    out += "</bdi>";
}

void appendScriptData(std::string& out, const JsonObject& value) {
    const std::string text = jsonText(value);
    // A "<" occurs only inside strings, where an escape can replace it.
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('<', start), text.size());
        out.append(text, start, end - start);
        if (end < text.size()) {
            out += "\\u003c";
        }
        start = end + 1;
    }
}

} // namespace olmkit
