#ifndef OLMKIT_EXAMPLES_MINIMAL_HOST_UTF16_H
#define OLMKIT_EXAMPLES_MINIMAL_HOST_UTF16_H

#include <stddef.h>
#include <stdint.h>

/*
 * Converts valid UTF-8 of `size` bytes to UTF-16, which never has more than `size` units. Returns
 * the number of units; adds no terminator.
 */
size_t toUtf16(const char* text, size_t size, uint16_t* units);

/*
 * Prints UTF-16 to standard output on one line: "/" for a 0 unit, which separates the levels of a
 * folder, a space for other control characters and U+FFFD for a lone surrogate.
 */
void printUtf16(const uint16_t* units, size_t count);

#endif
