#include "cli/show/BodyText.h"

#include <string_view>

#include "cli/show/HtmlText.h"
#include "cli/show/PropertyDescription.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::uint32_t bodyTag = 0x1000001F;
constexpr std::uint32_t htmlTag = 0x10130102;

std::string utf8OfUtf16(const std::vector<std::byte>& bytes) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        units += static_cast<char16_t>(std::to_integer<unsigned>(bytes[i]) |
                                       std::to_integer<unsigned>(bytes[i + 1]) << 8);
    }
    return utf8Of(units);
}

// The source of the page, which is UTF-16 behind a mark, and otherwise taken for UTF-8.
std::string htmlOf(const olmhost::Message& message) {
    const olmhost::Property* html = message.find(htmlTag);
    if (html == nullptr || html->values.empty()) {
        return {};
    }
    const olmhost::ValueStream& value = html->values.front();
    const std::vector<std::byte> bytes = message.bytes(value, value.size);
    if (bytes.size() >= 2 && bytes[0] == std::byte{0xFF} && bytes[1] == std::byte{0xFE}) {
        return utf8OfUtf16(bytes);
    }
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// The same text with nothing in it that acts on a terminal but for line ends and tabs.
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
    const std::string plain = utf8Of(message.text(message.properties(), bodyTag));
    const std::string html = plain.empty() || !isHtml(plain) ? htmlOf(message) : plain;
    // Many plain bodies are the HTML over again.
    return cleanLines(plain.empty() || plain == html ? textOfHtml(html) : plain);
}

} // namespace olmkit
