#include "cli/show/BodyText.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/show/HtmlText.h"
#include "cli/show/PropertyDescription.h"
#include "cli/show/PropertyTags.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::array utf16Mark = {std::byte{0xFF}, std::byte{0xFE}}; // byte order mark

// Skips the byte order mark. Bytes are in little-endian order.
std::string utf8OfUtf16(const std::vector<std::byte>& bytes) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = utf16Mark.size(); i + 1 < bytes.size(); i += 2) {
        units += static_cast<char16_t>(std::to_integer<unsigned>(bytes[i]) |
                                       std::to_integer<unsigned>(bytes[i + 1]) << 8);
    }
    return utf8Of(units);
}

// Returns the HTML source as UTF-8. It is UTF-16 after a byte order mark, otherwise UTF-8.
std::string htmlOf(const olmhost::Message& message) {
    const olmhost::Property* html = message.find(PidTagHtml);
    if (html == nullptr || html->values.empty()) {
        return {};
    }
    const olmhost::ValueStream& value = html->values.front();
    const std::vector<std::byte> bytes = message.bytes(value, value.size);
    if (bytes.size() >= utf16Mark.size() &&
        std::equal(utf16Mark.begin(), utf16Mark.end(), bytes.begin())) {
        return utf8OfUtf16(bytes);
    }
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Returns the text with all control characters replaced except line ends and tabs, each line ended
// by "\n".
std::string cleanLines(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + 1);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n\t"), text.size());
        appendPrintable(lines, text.substr(0, end));
        text.remove_prefix(end);
        if (text.empty()) {
            lines += '\n';
        } else {
            lines += text.front() == '\t' ? '\t' : '\n';
            text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
        }
    }
    return lines;
}

} // namespace

std::string bodyText(const olmhost::Message& message) {
    const std::string plain = utf8Of(message.text(message.properties(), PidTagBody));
    const std::string html = plain.empty() || !isHtml(plain) ? htmlOf(message) : plain;
    // Many plain bodies repeat the HTML source.
    return cleanLines(plain.empty() || plain == html ? textOfHtml(html) : plain);
}

} // namespace olmkit
