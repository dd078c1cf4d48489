#ifndef OLMKIT_TESTS_FAKEHOST_SWEEPS_H
#define OLMKIT_TESTS_FAKEHOST_SWEEPS_H

#include <functional>

#include "tests/fakehost/Extraction.h"

namespace fakehost {

// Extracts the first item of `item` once for each host call, with that call failing with `status`:
// the request must return a result and the host must get everything back. `doneWithoutRoot` is how
// many of these requests report success although there is no root storage: without a named property
// the module does not notice that it is missing.
void expectNoHostFailureEscapes(const ItemDocument& item, const ItemRun& run = {},
                                int doneWithoutRoot = 0, int32_t status = -1);

// The same, with each write in turn taking a single byte without reporting a failure.
void expectNoShortWriteEscapes(const ItemDocument& item, const ItemRun& run = {});

// Extracts the item with the document broken after each event in turn. Without the item's own tag
// the request must fail; with it, it must succeed, and `check` is called with its message.
using MessageCheck = std::function<void(const StoredMessage& message)>;
void expectItemIsFinishedWhereverTheDocumentBreaks(const ItemDocument& item, const ItemRun& run,
                                                   const MessageCheck& check);

} // namespace fakehost

#endif
