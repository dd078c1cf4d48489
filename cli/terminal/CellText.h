#ifndef OLMKIT_CLI_TERMINAL_CELLTEXT_H
#define OLMKIT_CLI_TERMINAL_CELLTEXT_H

#include <string>
#include <string_view>

namespace olmkit {

// Text in terminal cells. All text is UTF-8 without control characters.
//
// Terminals differ in the width of a sequence of joined signs: some show one sign of two cells,
// others each sign by itself. The largest width counts here, so no line is too long on any.

// Cells between two columns of a table.
inline constexpr unsigned columnGap = 2;

// Returns the width of a text in cells.
unsigned cellsOf(std::string_view text);

// Appends a text, padded with blanks to `room` cells. A text that is too long is cut after a whole
// character, with its marks and what is joined to it, and ends in an ellipsis.
void appendFitted(std::string& out, std::string_view text, unsigned room);

// Appends a text, aligned to the right in `room` cells; a longer text is appended whole.
void appendRight(std::string& out, std::string_view text, unsigned room);

} // namespace olmkit

#endif
