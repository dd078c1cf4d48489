#include "filter/core/Utf8.h"

namespace qor {

namespace {

// What may follow a lead byte: the number of bytes and the range of the first of them, which
// excludes overlong forms, surrogates and code points above U+10FFFF.
struct LeadByte {
    unsigned char first;
    unsigned char last;
    unsigned char followCount;
    unsigned char lowest;
    unsigned char highest;
};

// clang-format off
constexpr LeadByte leadBytes[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF},
    {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F},
    {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF},
    {0xF4, 0xF4, 3, 0x80, 0x8F},
};
// clang-format on

const LeadByte* findLeadByte(unsigned char byte) {
    for (const LeadByte& row : leadBytes) {
        if (byte >= row.first && byte <= row.last) {
            return &row;
        }
    }
    return nullptr;
}

bool isHighSurrogate(uint16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(uint16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

char32_t readUtf8(const char*& position, const char* end) {
    const auto lead = static_cast<unsigned char>(*position++);
    if (lead < 0x80) {
        return lead;
    }
    const LeadByte* row = findLeadByte(lead);
    if (row == nullptr) {
        return replacementCharacter;
    }
    char32_t codePoint = lead & (0x3FU >> row->followCount);
    unsigned char lowest = row->lowest;
    unsigned char highest = row->highest;
    for (int left = row->followCount; left > 0; --left) {
        const auto byte = static_cast<unsigned char>(position != end ? *position : 0);
        if (byte < lowest || byte > highest) {
            return replacementCharacter;
        }
        ++position;
        codePoint = codePoint << 6 | (byte & 0x3FU);
        lowest = 0x80;
        highest = 0xBF;
    }
    return codePoint;
}

int writeUtf16(char32_t codePoint, uint16_t* units) {
    if (codePoint < 0x10000) {
        units[0] = static_cast<uint16_t>(codePoint);
        return 1;
    }
    const char32_t offset = codePoint - 0x10000;
    units[0] = static_cast<uint16_t>(0xD800 + (offset >> 10));
    units[1] = static_cast<uint16_t>(0xDC00 + (offset & 0x3FF));
    return 2;
}

char32_t readUtf16(const uint16_t*& position, const uint16_t* end) {
    const uint16_t unit = *position++;
    if (!isHighSurrogate(unit)) {
        return isLowSurrogate(unit) ? replacementCharacter : unit;
    }
    if (position == end || !isLowSurrogate(*position)) {
        return replacementCharacter;
    }
    const char32_t high = unit - 0xD800U;
    const char32_t low = *position++ - 0xDC00U;
    return 0x10000 + (high << 10 | low);
}

void appendUtf8(std::string& text, char32_t codePoint) {
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
        return;
    }
    const int followCount = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
    const char32_t leadMark = 0xFF00U >> (followCount + 1) & 0xFF; // as many 1 bits as bytes
    text += static_cast<char>(leadMark | codePoint >> (6 * followCount));
    for (int left = followCount - 1; left >= 0; --left) {
        text += static_cast<char>(0x80 | (codePoint >> (6 * left) & 0x3F));
    }
}

} // namespace qor
