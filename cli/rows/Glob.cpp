#include "cli/rows/Glob.h"

#include <algorithm>

#include "cli/rows/NormalText.h"

namespace olmkit {

namespace {

using Kind = GlobToken::Kind;

constexpr char32_t slash = U'/';

bool isSlash(const GlobToken& token) {
    return token.kind == Kind::One && token.character == slash;
}

// Parses a pattern into tokens.
class GlobReader {
public:
    GlobReader(std::u32string_view pattern, std::vector<GlobToken>& tokens)
        : rest(pattern), tokens(tokens) {}

    // Returns what is wrong with the pattern, or an empty text.
    std::string read() {
        while (!rest.empty() && error.empty()) {
            const char32_t next = take();
            switch (next) {
            case U'*':
                readStars();
                break;
            case U'?':
                tokens.push_back({Kind::Any});
                break;
            case U'[':
                readSet();
                break;
            default:
                tokens.push_back({Kind::One, plain(next)});
                break;
            }
        }
        trim();
        if (error.empty() && tokens.empty()) {
            error = "it names no folder";
        }
        return error;
    }

private:
    char32_t take() {
        const char32_t first = rest.front();
        rest.remove_prefix(1);
        return first;
    }

    // Returns the literal character that `next`, just taken, begins: itself, or the one after "\".
    char32_t plain(char32_t next) { return next == U'\\' && !rest.empty() ? take() : next; }

    void readStars() {
        const bool isLevelStart =
            tokens.empty() || isSlash(tokens.back()) || tokens.back().kind == Kind::Levels;
        bool isAcross = false;
        while (rest.starts_with(U'*')) {
            take();
            isAcross = true;
        }
        if (isAcross && isLevelStart && rest.size() > 1 && rest.front() == slash) {
            take();
            tokens.push_back({Kind::Levels});
        } else {
            tokens.push_back({isAcross ? Kind::Across : Kind::Within});
        }
    }

    void readSet() {
        GlobToken set = {Kind::Set};
        set.isNegated = rest.starts_with(U'!') || rest.starts_with(U'^');
        if (set.isNegated) {
            take();
        }
        // A "]" that comes first is a literal character.
        for (bool isFirst = true; isFirst || !rest.starts_with(U']'); isFirst = false) {
            if (rest.empty()) {
                error = "a [ has no matching ]; write \\[ for the character itself";
                return;
            }
            if (rest.starts_with(U"[:")) {
                error = "classes such as [:alpha:] are not supported; write \\[ for the character "
                        "itself";
                return;
            }
            readRange(set);
        }
        take();
        tokens.push_back(std::move(set));
    }

    void readRange(GlobToken& set) {
        const char32_t first = plain(take());
        char32_t last = first;
        if (rest.size() > 1 && rest.front() == U'-' && rest[1] != U']') {
            take();
            last = plain(take());
        }
        if (last < first) {
            error = "a range in [ ] ends before it starts";
        }
        set.ranges.push_back({first, last});
    }

    // Removes what has no meaning at the ends.
    void trim() {
        tokens.erase(tokens.begin(), std::ranges::find_if_not(tokens, isSlash));
        while (!tokens.empty()) {
            if (isSlash(tokens.back()) || tokens.back().kind == Kind::Levels) {
                tokens.pop_back();
            } else if (tokens.size() > 1 && tokens.back().kind == Kind::Across &&
                       isSlash(tokens[tokens.size() - 2])) {
                tokens.resize(tokens.size() - 2);
            } else {
                break;
            }
        }
    }

    std::u32string_view rest;
    std::vector<GlobToken>& tokens;
    std::string error;
};

// All places in the pattern that the text read so far can have reached, in ascending order.
class Places {
public:
    explicit Places(const std::vector<GlobToken>& tokens) : tokens(tokens) {}

    bool isEmpty() const { return reached.empty(); }

    // Returns whether the text read so far matches the whole pattern.
    bool atEnd() const { return !reached.empty() && reached.back() == tokens.size(); }

    // Adds a place and those after it that need no text. Call it with ascending places: each call
    // then adds a run without gaps, up to the last place.
    void add(std::size_t place, bool isLevelStart) {
        if (!reached.empty() && place <= reached.back()) {
            return;
        }
        reached.push_back(place);
        while (place < tokens.size() && needsNoText(tokens[place], isLevelStart)) {
            reached.push_back(++place);
        }
    }

    // Adds the places reached after one more character to `next`, which is empty.
    void advance(char32_t character, Places& next) const {
        const bool isLevelStart = character == slash;
        for (const std::size_t place : reached) {
            if (place == tokens.size()) {
                continue;
            }
            const GlobToken& token = tokens[place];
            if (takes(token, character)) {
                next.add(repeats(token) ? place : place + 1, isLevelStart);
            }
        }
    }

    void clear() { reached.clear(); }
    void swap(Places& other) { reached.swap(other.reached); }

private:
    static bool needsNoText(const GlobToken& token, bool isLevelStart) {
        return token.kind == Kind::Within || token.kind == Kind::Across ||
               (token.kind == Kind::Levels && isLevelStart);
    }

    static bool repeats(const GlobToken& token) {
        return token.kind == Kind::Within || token.kind == Kind::Across ||
               token.kind == Kind::Levels;
    }

    static bool takes(const GlobToken& token, char32_t character) {
        switch (token.kind) {
        case Kind::One:
            return character == token.character;
        case Kind::Any:
        case Kind::Within:
            return character != slash;
        case Kind::Set:
            return character != slash &&
                   std::ranges::any_of(token.ranges, [character](const GlobToken::Range& range) {
                       return range.first <= character && character <= range.last;
                   }) != token.isNegated;
        case Kind::Across:
        case Kind::Levels:
            break;
        }
        return true;
    }

    const std::vector<GlobToken>& tokens;
    std::vector<std::size_t> reached;
};

} // namespace

Glob::Glob(std::string_view pattern) {
    const std::u32string text = composedText(pattern);
    fault = GlobReader(text, tokens).read();
}

bool Glob::matches(std::u16string_view folder) const {
    const std::u32string text = composedText(folder);
    std::u32string_view rest = text;
    rest.remove_prefix(std::min(rest.find_first_not_of(slash), rest.size()));

    Places places(tokens);
    Places next(tokens);
    places.add(0, true);
    for (const char32_t character : rest) {
        if (character == slash && places.atEnd()) {
            return true;
        }
        places.advance(character, next);
        places.swap(next);
        next.clear();
        if (places.isEmpty()) {
            return false;
        }
    }
    return places.atEnd();
}

} // namespace olmkit
