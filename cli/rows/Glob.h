#ifndef OLMKIT_CLI_ROWS_GLOB_H
#define OLMKIT_CLI_ROWS_GLOB_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// One step of a pattern.
struct GlobToken {
    enum class Kind : std::uint8_t {
        One,    // this character
        Any,    // any character except "/"
        Set,    // a character except "/" that is in one of the ranges, or in none when negated
        Within, // any text without "/"
        Across, // any text
        Levels, // any number of whole levels, each with its "/"
    };
    struct Range {
        char32_t first;
        char32_t last;
    };

    Kind kind;
    char32_t character = 0;
    bool isNegated = false;
    std::vector<Range> ranges = {};
};

// A pattern for folders in the syntax of shells:
//   *       any text within a level       **      any text, including "/"
//   ?       one character                 **/     before a level: any number of levels, or none
//   [a-f]   one of these characters       [!a-f]  one of the others; [^a-f] is the same
//   \       makes the next character literal
// Only "**" and "/" match a "/". Case matters; how accents are encoded does not. A pattern that
// matches a folder also matches everything below it.
//
// Matching takes time proportional to at most the product of the two lengths.
class Glob {
public:
    // `pattern` is UTF-8. "/" at either end and a final "/**" are ignored.
    explicit Glob(std::string_view pattern);

    // Returns what is wrong with the pattern, as a message; empty for a valid one.
    const std::string& error() const { return fault; }

    // Returns whether `folder`, or a folder that contains it, matches. "/" separates its levels.
    //
    // REQUIRES: error().empty()
    bool matches(std::u16string_view folder) const;

private:
    std::vector<GlobToken> tokens;
    std::string fault;
};

} // namespace olmkit

#endif
