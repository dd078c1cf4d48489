#ifndef OLMKIT_CLI_SHOW_HTMLTEXT_H
#define OLMKIT_CLI_SHOW_HTMLTEXT_H

#include <string>
#include <string_view>

namespace olmkit {

// Returns the text that an HTML page shows, without a layout: tags are removed, blocks and line
// breaks become lines, white space outside of "pre" becomes one blank, entities are resolved, and
// titles, styles, scripts and comments are left out. Input and output are UTF-8.
//
// Takes any text, in time proportional to its length.
std::string textOfHtml(std::string_view html);

// Returns whether a text is HTML source, judged by its first tag.
bool isHtml(std::string_view text);

} // namespace olmkit

#endif
