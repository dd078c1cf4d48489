#include "cli/show/HtmlText.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "cli/show/HtmlEntities.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::string_view blanks = " \t\n\f\r";

constexpr std::uint32_t maxCodePoint = 0x10FFFF;
constexpr std::uint32_t firstSurrogate = 0xD800;
constexpr std::uint32_t lastSurrogate = 0xDFFF;
constexpr char32_t noBreakSpace = 0xA0;

// What a tag does to the text around it.
enum class Effect {
    None,
    Line,      // begins a line
    Paragraph, // begins a line after an empty one
    Break,     // ends a line, even an empty one
    Item,      // begins a line with a "-"
    Cell,      // separates two cells of a line
    Hidden,    // hides everything up to the closing tag
    Pre,       // keeps white space up to the closing tag
};

struct TagRow {
    std::string_view name;
    Effect effect;
};

// clang-format off
constexpr TagRow tagRows[] = {
    {"address",    Effect::Line},
    {"article",    Effect::Line},
    {"aside",      Effect::Line},
    {"blockquote", Effect::Paragraph},
    {"br",         Effect::Break},
    {"center",     Effect::Line},
    {"dd",         Effect::Line},
    {"div",        Effect::Line},
    {"dl",         Effect::Paragraph},
    {"dt",         Effect::Line},
    {"fieldset",   Effect::Line},
    {"footer",     Effect::Line},
    {"form",       Effect::Line},
    {"h1",         Effect::Paragraph},
    {"h2",         Effect::Paragraph},
    {"h3",         Effect::Paragraph},
    {"h4",         Effect::Paragraph},
    {"h5",         Effect::Paragraph},
    {"h6",         Effect::Paragraph},
    {"header",     Effect::Line},
    {"hr",         Effect::Line},
    {"li",         Effect::Item},
    {"main",       Effect::Line},
    {"nav",        Effect::Line},
    {"ol",         Effect::Line},
    {"p",          Effect::Paragraph},
    {"pre",        Effect::Pre},
    {"script",     Effect::Hidden},
    {"section",    Effect::Line},
    {"style",      Effect::Hidden},
    {"table",      Effect::Line},
    {"td",         Effect::Cell},
    {"th",         Effect::Cell},
    {"title",      Effect::Hidden},
    {"tr",         Effect::Line},
    {"ul",         Effect::Line},
};
// clang-format on

static_assert(std::ranges::is_sorted(tagRows, {}, &TagRow::name));

bool isLetter(char letter) {
    return lowerAscii(letter) >= 'a' && lowerAscii(letter) <= 'z';
}

bool startsWith(std::string_view text, std::string_view lowerCase) {
    return text.size() >= lowerCase.size() &&
           std::ranges::equal(text.substr(0, lowerCase.size()), lowerCase, {}, lowerAscii);
}

Effect effectOf(std::string_view name) {
    const TagRow* found = std::ranges::lower_bound(tagRows, name, {}, &TagRow::name);
    return found != std::end(tagRows) && found->name == name ? found->effect : Effect::None;
}

class Stripper {
public:
    explicit Stripper(std::string_view html) : rest(html) {}

    std::string run();

private:
    void takeMarkup();
    void takeTag();
    void skipPast(std::string_view end);
    std::string_view takeTagEnd();
    void apply(Effect effect, bool isClosing);
    void takeReference();
    void takeText(char byte);
    void put(std::string_view text);
    void beginLine(unsigned emptyLines);

    std::string_view rest;
    std::string text;
    unsigned pendingLines = 0; // line ends to write before the next text
    bool isBlankPending = false;
    unsigned openPre = 0;
};

std::string Stripper::run() {
    while (!rest.empty()) {
        if (rest.front() == '<') {
            takeMarkup();
        } else if (rest.front() == '&') {
            takeReference();
        } else {
            takeText(rest.front());
            rest.remove_prefix(1);
        }
    }
    text.erase(text.find_last_not_of(" \n") + 1);
    if (!text.empty()) {
        text += '\n';
    }
    return std::move(text);
}

// Takes markup, which begins with "<", or a "<" that is a plain character.
void Stripper::takeMarkup() {
    if (rest.starts_with("<!--")) {
        skipPast("-->");
    } else if (rest.starts_with("<!") || rest.starts_with("<?")) {
        skipPast(">");
    } else if (rest.size() > 1 && (isLetter(rest[1]) || rest[1] == '/')) {
        takeTag();
    } else {
        put("<");
        rest.remove_prefix(1);
    }
}

// Skips markup up to and including `end`, or everything when there is no `end`.
void Stripper::skipPast(std::string_view end) {
    const std::size_t found = rest.find(end);
    rest.remove_prefix(found == std::string_view::npos ? rest.size() : found + end.size());
}

void Stripper::takeTag() {
    const bool isClosing = rest[1] == '/';
    rest.remove_prefix(isClosing ? 2 : 1);
    std::string name;
    while (!rest.empty() &&
           (isLetter(rest.front()) || (rest.front() >= '0' && rest.front() <= '9'))) {
        name += lowerAscii(rest.front());
        rest.remove_prefix(1);
    }
    const bool isEmpty = takeTagEnd().ends_with('/');
    const Effect effect = effectOf(name);
    if (effect == Effect::Hidden && !isClosing && !isEmpty) {
        while (!rest.empty() && !(rest.starts_with("</") && startsWith(rest.substr(2), name))) {
            rest.remove_prefix(1);
        }
        return;
    }
    apply(effect, isClosing);
}

// Takes the rest of a tag and returns it; a ">" in quotes doesn't end it.
std::string_view Stripper::takeTagEnd() {
    char quote = 0;
    std::size_t size = 0;
    while (size < rest.size() && (quote != 0 || rest[size] != '>')) {
        const char byte = rest[size];
        if (byte == quote) {
            quote = 0;
        } else if (quote == 0 && (byte == '"' || byte == '\'') && size > 0 &&
                   rest[size - 1] == '=') {
            quote = byte;
        }
        ++size;
    }
    const std::string_view end = rest.substr(0, size);
    rest.remove_prefix(std::min(size + 1, rest.size()));
    return end;
}

void Stripper::apply(Effect effect, bool isClosing) {
    switch (effect) {
    case Effect::Line:
        beginLine(0);
        break;
    case Effect::Paragraph:
        beginLine(1);
        break;
    case Effect::Break:
        ++pendingLines;
        isBlankPending = false;
        break;
    case Effect::Item:
        beginLine(0);
        if (!isClosing) {
            put("- ");
        }
        break;
    case Effect::Cell:
        isBlankPending = true;
        break;
    case Effect::Pre:
        beginLine(1);
        openPre = isClosing ? openPre - std::min(openPre, 1U) : openPre + 1;
        break;
    case Effect::Hidden:
    case Effect::None:
        break;
    }
}

// Takes "&amp;", "&#38;" or "&#x26;"; anything else is plain text.
void Stripper::takeReference() {
    constexpr std::size_t maxSize = 12;
    const std::size_t end = rest.substr(0, maxSize).find(';');
    char32_t character = 0;
    if (end != std::string_view::npos && end > 1) {
        std::string_view name = rest.substr(1, end - 1);
        if (name.front() == '#') {
            const bool isHex = name.size() > 1 && lowerAscii(name[1]) == 'x';
            name.remove_prefix(isHex ? 2 : 1);
            std::uint32_t number = 0;
            const char* stop = name.data() + name.size();
            const auto read = std::from_chars(name.data(), stop, number, isHex ? 16 : 10);
            const bool isCharacter = number > 0 && number <= maxCodePoint &&
                                     (number < firstSurrogate || number > lastSurrogate);
            if (read.ec == std::errc() && read.ptr == stop && !name.empty()) {
                character = isCharacter ? number : replacementCharacter;
            }
        } else {
            character = characterOfEntity(name);
        }
    }
    if (character == 0) {
        put("&");
        rest.remove_prefix(1);
        return;
    }
    std::string resolved;
    appendCodePoint(resolved, character == noBreakSpace ? U' ' : character);
    put(resolved);
    rest.remove_prefix(end + 1);
}

void Stripper::takeText(char byte) {
    const bool isBlank = blanks.find(byte) != std::string_view::npos;
    if (openPre == 0 && isBlank) {
        isBlankPending = true;
    } else if (openPre > 0 && byte == '\n') {
        ++pendingLines;
    } else if (byte != '\r') {
        put({&byte, 1});
    }
}

// Appends visible text, after the pending line ends or blank.
void Stripper::put(std::string_view shown) {
    if (pendingLines > 0) {
        if (!text.empty()) {
            text.append(pendingLines, '\n');
        }
        pendingLines = 0;
    } else if (isBlankPending && !text.empty() && !text.ends_with('\n') && !text.ends_with(' ')) {
        text += ' ';
    }
    isBlankPending = false;
    text += shown;
}

void Stripper::beginLine(unsigned emptyLines) {
    pendingLines = std::max(pendingLines, emptyLines + 1);
    isBlankPending = false;
}

} // namespace

std::string textOfHtml(std::string_view html) {
    return Stripper(html).run();
}

bool isHtml(std::string_view text) {
    const std::size_t start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(start);
    return startsWith(text, "<html") || startsWith(text, "<!doctype html") ||
           startsWith(text, "<head") || startsWith(text, "<body");
}

} // namespace olmkit
