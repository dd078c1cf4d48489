#ifndef OLMKIT_CLI_REPORT_PAGEPARTS_H
#define OLMKIT_CLI_REPORT_PAGEPARTS_H

#include <string_view>

namespace olmkit {

// What page.html, page.css and page.js hold.
extern const std::string_view pageTemplate; // "{{name}}" stands where ReportPage puts something
extern const std::string_view pageStyle;
extern const std::string_view pageScript;

} // namespace olmkit

#endif
