#ifndef OLMKIT_CLI_TERMINAL_CELLTEXT_H
#define OLMKIT_CLI_TERMINAL_CELLTEXT_H

#include <string>
#include <string_view>

namespace olmkit {

// Texts are UTF-8 without controls.
//
// Terminals differ in what a sequence of joined signs takes: some show one sign of two cells,
// others each by itself. What counts here is the most that it can take, so no line gets too long on
// any.

// Cells between the columns of a table.
inline constexpr unsigned columnGap = 2;

// Cells that a text takes.
unsigned cellsOf(std::string_view text);

// Appends a text and blanks, `room` cells in all. A text that is too long is cut behind a whole
// character, its marks and what is joined to it included, and gets an ellipsis.
void appendFitted(std::string& out, std::string_view text, unsigned room);

// Appends blanks and a text, `room` cells in all, or more when the text is longer.
void appendRight(std::string& out, std::string_view text, unsigned room);

} // namespace olmkit

#endif
