#include "tests/fakehost/Text.h"

#include <cstdint>
#include <stdexcept>

namespace fakehost {

namespace {

void appendUtf8(std::string& out, uint32_t point) {
    const auto tail = [&](int shift) {
        out.push_back(static_cast<char>(0x80 | (point >> shift & 0x3F)));
    };
    if (point < 0x80) {
        out.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        out.push_back(static_cast<char>(0xC0 | point >> 6));
        tail(0);
    } else if (point < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | point >> 12));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | point >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

bool isHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

Text::Text(const char* utf8) : units(toUtf16(utf8)) {}

Text::Text(const std::string& utf8) : units(toUtf16(utf8)) {}

std::string toUtf8(std::u16string_view units) {
    std::string out;
    for (size_t i = 0; i < units.size(); ++i) {
        uint32_t point = units[i];
        if (isHigh(units[i]) && i + 1 < units.size() && isLow(units[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (units[i + 1] - 0xDC00U);
            ++i;
        } else if (isHigh(units[i]) || isLow(units[i])) {
            point = 0xFFFD;
        }
        appendUtf8(out, point);
    }
    return out;
}

// The sources of the tests are valid UTF-8, so anything else is a mistake in the test.
std::u16string toUtf16(std::string_view utf8) {
    std::u16string out;
    for (size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (i + length > utf8.size()) {
            throw std::invalid_argument("toUtf16(): incomplete UTF-8");
        }
        uint32_t point = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (size_t k = 1; k < length; ++k) {
            point = point << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3FU);
        }
        if (point >= 0x10000) {
            out.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(point));
        }
        i += length;
    }
    return out;
}

std::string inQuotes(std::u16string_view units) {
    std::string out = "\"";
    for (const char unit : toUtf8(units)) {
        if (unit == '\0') {
            out += "\\0";
        } else if (unit == '"') {
            out += "\\\"";
        } else {
            out.push_back(unit);
        }
    }
    return out + "\"";
}

std::u16string patternText(size_t count) {
    std::u16string out;
    out.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        out.push_back(static_cast<char16_t>(0x4E00 + i % 20011));
    }
    return out;
}

} // namespace fakehost
