#ifndef OLMKIT_CLI_REPORT_MARKUP_H
#define OLMKIT_CLI_REPORT_MARKUP_H

#include <string>
#include <string_view>

#include "cli/rows/JsonLine.h"

namespace olmkit {

// Returns UTF-8 text with control characters replaced, see appendPrintable().
std::string printableText(std::string_view text);

// Appends the printable form of UTF-8 text, escaped for HTML, both in elements and in attributes.
void appendHtml(std::string& out, std::string_view text);

// Appends text that may be in any script, so that its direction doesn't affect the text around it.
void appendIsolated(std::string& out, std::string_view text);

// Appends a value as JSON for a script element: nothing in it ends the element.
void appendScriptData(std::string& out, const JsonObject& value);

} // namespace olmkit

#endif
