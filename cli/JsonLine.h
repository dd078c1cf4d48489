#ifndef OLMKIT_CLI_JSONLINE_H
#define OLMKIT_CLI_JSONLINE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace olmkit {

// Writes one JSON object as a line, member by member: a listing writes tens of millions of members,
// and no tree of values is made for them. Keys go out as they stand, so they hold no character
// that JSON escapes.
class JsonLine {
public:
    // `out` is borrowed; the object is appended to it.
    explicit JsonLine(std::string& out) : out(out) {}

    void number(std::string_view key, std::uint64_t value);
    void signedNumber(std::string_view key, std::int64_t value);
    void text(std::string_view key, std::u16string_view value);
    void text(std::string_view key, std::string_view value); // UTF-8; broken bytes become U+FFFD
    void null(std::string_view key);

    // Closes the object and the line.
    void end();

private:
    void startMember(std::string_view key);

    std::string& out;
    char separator = '{';
};

} // namespace olmkit

#endif
