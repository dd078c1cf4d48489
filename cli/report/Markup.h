#ifndef OLMKIT_CLI_REPORT_MARKUP_H
#define OLMKIT_CLI_REPORT_MARKUP_H

#include <string>
#include <string_view>

#include "cli/rows/JsonLine.h"

namespace olmkit {

// Appends UTF-8 text as text of an HTML page, good between tags and between quotes. What
// appendPrintable() takes out is taken out.
void appendHtml(std::string& out, std::string_view text);

// Appends text that may be in any script, so that its direction changes nothing around it.
void appendIsolated(std::string& out, std::string_view text);

// Appends a value as JSON that may stand in a script element: nothing in it ends the element.
void appendScriptData(std::string& out, const JsonObject& value);

} // namespace olmkit

#endif
