#ifndef OLMKIT_TESTS_FAKEHOST_EXTRACTION_H
#define OLMKIT_TESTS_FAKEHOST_EXTRACTION_H

#include <functional>
#include <vector>

#include "tests/fakehost/Scan.h"

namespace fakehost {

// The outcome of one VwDoSpecial.
struct Outcome {
    int32_t result = -1;
    uint16_t status = 0xFFFF;
    std::vector<int32_t> progress; // each value passed to the callback
    StoredMessage message;
    Bytes outputBytes;       // written to the output itself
    int handlesLeftOpen = 0; // when VwDoSpecial returned
    int openHandles = 0;     // after the host ended the output, beyond those open before
    int openReaders = 0;     // when VwDoSpecial returned, beyond those open before
    int lockedBlocks = 0;    // likewise
};

// Returns what the progress callback returns: non-zero cancels. An empty one never cancels. More
// than a million calls fail the test and cancel.
using ProgressAnswer = std::function<int32_t(int32_t value)>;

// Calls VwDoSpecial on an open archive and ends its output.
Outcome extractIndex(Scan& scan, int32_t index, const ProgressAnswer& answer = {});
Outcome extractAt(Scan& scan, uint32_t entry, uint32_t item, const ProgressAnswer& answer = {});
// The same without a callback; the document must have an end.
Outcome extractIndexWithoutCallback(Scan& scan, int32_t index);

// What to do around one extraction in a host of its own. All are optional.
struct ItemRun {
    // Adds entries after the document's, before the archive is opened.
    std::function<void(FakeHost& host)> archive;
    // Runs right before VwDoSpecial, with the count of calls at 0: the place to set failures.
    std::function<void(FakeHost& host)> prepare;
    // Runs after the output has ended, before the host is destroyed.
    std::function<void(FakeHost& host)> inspect;
    ProgressAnswer answer;
};

// Extracts the first item of `document`, which is the first entry of an archive
// ("Local/items.xml").
Outcome extractItem(const ItemDocument& document, const ItemRun& run = {});

// Expects that no reader and no lock was left by VwDoSpecial, and no handle after the end of its
// output.
void expectReleased(const Outcome& outcome);

// Returns the message of the first item of `document`; a failed extraction fails the test.
StoredMessage writeItem(const ItemDocument& document, const ItemRun& run = {});

// Returns how many calls of the host that can fail extracting the first item of `document` makes.
int countHostCalls(const ItemDocument& document, const ItemRun& run = {});
// Extracts it with the `failing`-th of them failing, from 0.
Outcome extractWithFailure(const ItemDocument& document, int failing, const ItemRun& run = {},
                           int32_t status = -1);

} // namespace fakehost

#endif
