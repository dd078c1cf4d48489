#ifndef OLMKIT_TESTS_FAKEHOST_EXTRACTION_H
#define OLMKIT_TESTS_FAKEHOST_EXTRACTION_H

#include <functional>
#include <vector>

#include "tests/fakehost/Scan.h"

namespace fakehost {

// What one VwDoSpecial came to.
struct Outcome {
    int32_t result = -1;
    uint16_t status = 0xFFFF;
    std::vector<int32_t> progress; // each value that the callback got
    StoredMessage message;
    Bytes outputBytes;       // written to the output itself
    int handlesLeftOpen = 0; // when VwDoSpecial came back
    int openHandles = 0;     // after the host ended the output, beyond those open before
    int openReaders = 0;     // when VwDoSpecial came back, beyond those open before
    int lockedBlocks = 0;    // as above
};

// Answers the callback: non-zero cancels. An empty one never cancels; a run of more than a million
// steps fails the test and is cancelled.
using ProgressAnswer = std::function<int32_t(int32_t value)>;

// One VwDoSpecial on an open archive, and the end of its output.
Outcome extractIndex(Scan& scan, int32_t index, const ProgressAnswer& answer = {});
Outcome extractAt(Scan& scan, uint32_t entry, uint32_t item, const ProgressAnswer& answer = {});
// The same without any callback: never for a document that nothing ends.
Outcome extractIndexWithoutCallback(Scan& scan, int32_t index);

// The first item of `document`, the one entry of an archive ("Local/items.xml"), in a host of its
// own. `prepare` runs with the archive open and calls counted anew: the place to ask for failures
// and to add what the item needs is before; see `archive`.
struct ItemRun {
    // Further entries, added behind the document's.
    std::function<void(FakeHost& host)> archive;
    // Runs right before VwDoSpecial.
    std::function<void(FakeHost& host)> prepare;
    // Runs right after the output was ended, while the host stands.
    std::function<void(FakeHost& host)> inspect;
    ProgressAnswer answer;
};
Outcome extractItem(const ItemDocument& document, const ItemRun& run = {});

// The message of the first item of `document`; a failed extraction fails the test.
StoredMessage writeItem(const ItemDocument& document, const ItemRun& run = {});

// Calls of the host that can fail while the first item of `document` is extracted.
int countHostCalls(const ItemDocument& document, const ItemRun& run = {});
// The same with the `failing`-th of them failing, from 0.
Outcome extractWithFailure(const ItemDocument& document, int failing, const ItemRun& run = {},
                           int32_t status = -1);

} // namespace fakehost

#endif
