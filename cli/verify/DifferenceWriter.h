#ifndef OLMKIT_CLI_VERIFY_DIFFERENCEWRITER_H
#define OLMKIT_CLI_VERIFY_DIFFERENCEWRITER_H

#include "cli/rows/JsonLine.h"
#include "cli/terminal/Output.h"
#include "cli/verify/Difference.h"
#include "cli/verify/Verifier.h"

namespace olmkit {

// Writes the differences between the files and the manifest: as lines of text when they are found,
// or as one JSON object at the end.
class DifferenceWriter {
public:
    // `output` is borrowed.
    DifferenceWriter(Output& output, bool isJson) : output(output), isJson(isJson) {}

    void add(const Difference& difference);

    // Writes the numbers of files, after all differences.
    void finish(const Verifier& verifier);

private:
    Output& output;
    bool isJson;
    JsonObject differences = JsonObject::array(); // for JSON
};

} // namespace olmkit

#endif
