#ifndef OLMKIT_CLI_SHOW_HTMLTEXT_H
#define OLMKIT_CLI_SHOW_HTMLTEXT_H

#include <string>
#include <string_view>

namespace olmkit {

// The text that a page of HTML shows, as far as it can be had without laying the page out: tags go,
// blocks and line breaks become lines, white space is one blank outside of "pre", entities are
// resolved, and what is never shown (head, styles, scripts, comments) goes whole. UTF-8 in and out.
//
// Takes any text, in time in proportion to its length.
std::string textOfHtml(std::string_view html);

// Whether a text is HTML source, by its first tag.
bool isHtml(std::string_view text);

} // namespace olmkit

#endif
