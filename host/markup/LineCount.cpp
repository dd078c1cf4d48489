#include "host/markup/LineCount.h"

#include <algorithm>
#include <array>
#include <span>

namespace olmhost {

namespace {

constexpr std::size_t bufferSize = 16384; // bytes

// Counts the lines and characters of a document whose bytes come in pieces.
class Counter {
public:
    explicit Counter(DocumentEncoding encoding) : encoding(encoding) {}

    void add(std::span<const unsigned char> bytes) {
        for (const unsigned char byte : bytes) {
            if (unitSize(encoding) == 1) {
                addUnit(byte);
            } else if (held == noByte) {
                held = byte;
            } else {
                const bool little = encoding == DocumentEncoding::Utf16Le;
                addUnit(little ? static_cast<unsigned>(held | byte << 8)
                               : static_cast<unsigned>(held << 8 | byte));
                held = noByte;
            }
        }
    }

    LineColumn result() const { return place; }

private:
    void addUnit(unsigned unit) {
        if (unit == '\n' || unit == '\r') {
            if (unit == '\r' || !afterReturn) {
                ++place.line;
            }
            place.column = 1;
        } else if (!continuesCharacter(unit)) {
            ++place.column;
        }
        afterReturn = unit == '\r';
    }

    bool continuesCharacter(unsigned unit) const {
        if (encoding == DocumentEncoding::Utf8) {
            return (unit & 0xC0U) == 0x80;
        }
        return unitSize(encoding) == 2 && (unit & 0xFC00U) == 0xDC00;
    }

    DocumentEncoding encoding;
    static constexpr int noByte = -1;

    int held = noByte; // the first byte of a unit of two
    bool afterReturn = false;
    LineColumn place;
};

} // namespace

LineColumn countLines(Handle& stream, std::uint64_t place, DocumentEncoding encoding) {
    Counter counter(encoding);
    std::array<unsigned char, bufferSize> buffer{};
    if (stream.seekTo(0, Handle::seekFromStart) != Handle::statusDone) {
        return counter.result();
    }
    while (place > 0) {
        const auto size = static_cast<std::uint32_t>(std::min<std::uint64_t>(place, buffer.size()));
        std::uint32_t count = 0;
        const std::int32_t status = stream.readBytes(buffer.data(), size, count);
        counter.add({buffer.data(), count});
        place -= count;
        if (status != Handle::statusDone || count == 0) {
            break;
        }
    }
    return counter.result();
}

} // namespace olmhost
