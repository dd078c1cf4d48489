#include "cli/terminal/CellText.h"

#include <algorithm>

#include <utf8proc.h>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::string_view ellipsis = "\u2026"; // one cell

// Reads a text by grapheme clusters, which are single characters to a reader.
class CharacterReader {
public:
    explicit CharacterReader(std::string_view text) : rest(text) {
        if (!rest.empty()) {
            next = takeCodePoint(rest);
            hasNext = true;
        }
    }

    bool isAtEnd() const { return !hasNext; }

    // Moves past the next character. Returns its width in cells.
    unsigned take() {
        unsigned cells = 0;
        bool isOver = false;
        while (!isOver) {
            cells += cellWidth(next);
            if (next == emojiStyle) {
                cells = std::max(cells, 2U); // it turns the sign before it into a picture
            }
            const char32_t last = next;
            const std::string_view following = rest;
            hasNext = !rest.empty();
            if (!hasNext) {
                unread = 0;
                break;
            }
            next = takeCodePoint(rest);
            unread = following.size();
            isOver = utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(last),
                                                      static_cast<utf8proc_int32_t>(next), &state);
        }
        return cells;
    }

    // Bytes after the characters that have been taken.
    std::size_t bytesLeft() const { return unread; }

private:
    static constexpr char32_t emojiStyle = 0xFE0F;

    std::string_view rest;
    char32_t next = 0; // taken from `rest`, not yet part of a character
    bool hasNext = false;
    std::size_t unread = 0;
    utf8proc_int32_t state = 0;
};

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char unit) { return (unit & 0x80) == 0; });
}

} // namespace

unsigned cellsOf(std::string_view text) {
    if (isAscii(text)) {
        return static_cast<unsigned>(text.size());
    }
    unsigned cells = 0;
    for (CharacterReader reader(text); !reader.isAtEnd();) {
        cells += reader.take();
    }
    return cells;
}

void appendFitted(std::string& out, std::string_view text, unsigned room) {
    unsigned used = 0;
    unsigned usedAtCut = 0;
    std::size_t cut = 0; // bytes of the longest start that leaves a cell for the ellipsis
    for (CharacterReader reader(text); !reader.isAtEnd();) {
        used += reader.take();
        if (used > room) {
            out += text.substr(0, cut);
            out += ellipsis;
            out.append(room - std::min(room, usedAtCut + 1), ' ');
            return;
        }
        if (used < room) {
            cut = text.size() - reader.bytesLeft();
            usedAtCut = used;
        }
    }
    out += text;
    out.append(room - used, ' ');
}

void appendRight(std::string& out, std::string_view text, unsigned room) {
    out.append(room - std::min(room, cellsOf(text)), ' ');
    out += text;
}

} // namespace olmkit
