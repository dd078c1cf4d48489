#ifndef OLMKIT_CLI_REPORT_REPORTOPTIONS_H
#define OLMKIT_CLI_REPORT_REPORTOPTIONS_H

#include <string>

#include "cli/rows/FilterOptions.h"

namespace olmkit {

struct ReportOptions {
    std::string archive;
    std::string file; // the page to write
    FilterOptions filter;
};

} // namespace olmkit

#endif
