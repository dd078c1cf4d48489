#include "utf16.h"

#include <stdio.h>

size_t toUtf16(const char* text, size_t size, uint16_t* units) {
    const unsigned char* byte = (const unsigned char*)text;
    const unsigned char* const end = byte + size;
    size_t count = 0;
    while (byte < end) {
        uint32_t character = *byte++;
        const int more = (character >= 0xC0) + (character >= 0xE0) + (character >= 0xF0);
        character &= more == 0 ? 0x7FU : 0x3FU >> more;
        for (int i = 0; i < more; ++i) {
            character = character << 6 | (*byte++ & 0x3FU);
        }
        if (character > 0xFFFF) {
            units[count++] = (uint16_t)(0xD7C0 + (character >> 10));
            character = 0xDC00 | (character & 0x3FF);
        }
        units[count++] = (uint16_t)character;
    }
    return count;
}

static void printCharacter(uint32_t character) {
    const int more = (character > 0x7F) + (character > 0x7FF) + (character > 0xFFFF);
    const uint32_t mark = more == 0 ? 0 : (0xFF80U >> more) & 0xFF; /* as many ones as bytes */
    putchar((int)(mark | character >> (6 * more)));
    for (int i = more - 1; i >= 0; --i) {
        putchar((int)(0x80 | ((character >> (6 * i)) & 0x3F)));
    }
}

void printUtf16(const uint16_t* units, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        uint32_t character = units[i];
        const int isHigh = (character & 0xFC00) == 0xD800;
        if (isHigh && i + 1 < count && (units[i + 1] & 0xFC00) == 0xDC00) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (units[++i] & 0x3FFU);
        } else if ((character & 0xF800) == 0xD800) {
            character = 0xFFFD;
        }
        printCharacter(character == 0 ? '/' : character < ' ' ? ' ' : character);
    }
}
