#ifndef OLMKIT_CLI_REPORT_PAGEPARTS_H
#define OLMKIT_CLI_REPORT_PAGEPARTS_H

#include <string_view>

namespace olmkit {

// The contents of page.html, page.css and page.js.
extern const std::string_view pageTemplate; // ReportPage replaces each "{{name}}"
extern const std::string_view pageStyle;
extern const std::string_view pageScript;

} // namespace olmkit

#endif
