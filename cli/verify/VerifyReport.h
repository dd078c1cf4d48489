#ifndef OLMKIT_CLI_VERIFY_VERIFYREPORT_H
#define OLMKIT_CLI_VERIFY_VERIFYREPORT_H

#include "cli/rows/JsonLine.h"
#include "cli/terminal/Output.h"
#include "cli/verify/Difference.h"
#include "cli/verify/Verifier.h"

namespace olmkit {

// What verifying has found, as lines of text that come as they are found, or as one JSON object at
// the end.
class VerifyReport {
public:
    // `output` is borrowed.
    VerifyReport(Output& output, bool isJson) : output(output), isJson(isJson) {}

    void add(const Difference& difference);
    void finish(const Verifier& verifier);

private:
    Output& output;
    bool isJson;
    JsonObject differences = JsonObject::array(); // of a JSON report
};

} // namespace olmkit

#endif
