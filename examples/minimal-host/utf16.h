#ifndef OLMKIT_EXAMPLES_MINIMAL_HOST_UTF16_H
#define OLMKIT_EXAMPLES_MINIMAL_HOST_UTF16_H

#include <stddef.h>
#include <stdint.h>

/*
 * Valid UTF-8 of `size` bytes as UTF-16, which never has more units than that. Gives the count of
 * units; no 0 unit is added.
 */
size_t toUtf16(const char* text, size_t size, uint16_t* units);

/*
 * Prints units to standard output, on one line: "/" for a 0 unit, which parts the levels of a
 * folder, a space for other control characters and U+FFFD for half a surrogate pair.
 */
void printUtf16(const uint16_t* units, size_t count);

#endif
