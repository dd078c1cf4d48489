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
        Any,    // any character but "/"
        Set,    // a character but "/" that is in the ranges, or in none when negated
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

// A pattern for folders, as shells have them:
//   *       any text within a level       **      any text, "/" included
//   ?       one character                 **/     ahead of a level: any number of levels, also none
//   [a-f]   one of these characters       [!a-f]  one of the others; [^a-f] is the same
//   \       takes its meaning from the character behind it
// Only "**" and "/" match a "/". Letters count with their case; how accents are encoded doesn't
// matter. A pattern that a folder matches takes everything below it too.
//
// A match costs at most the product of the two lengths, whatever the pattern.
class Glob {
public:
    // `pattern` is UTF-8. "/" at its ends and "/**" at its end mean nothing.
    explicit Glob(std::string_view pattern);

    // What is wrong with the pattern, for people; empty when it can be used.
    const std::string& error() const { return fault; }

    // Whether that folder, or one round it, matches. "/" stands between its levels. Not to be
    // asked when there is an error.
    bool matches(std::u16string_view folder) const;

private:
    std::vector<GlobToken> tokens;
    std::string fault;
};

} // namespace olmkit

#endif
