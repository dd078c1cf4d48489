#ifndef OLMKIT_TESTS_UNIT_WRITERS_SWEEPS_H
#define OLMKIT_TESTS_UNIT_WRITERS_SWEEPS_H

#include <functional>

#include "tests/fakehost/Extraction.h"

// The first item of `item` again and again, each time with another call of the host failing: the
// request ends as a result and the host gets everything back. `doneWithoutRoot` is how many of
// these requests may say that they are done although there is no root storage: without a named
// property nothing of an item tells the module that it is missing.
void expectNoHostFailureEscapes(const fakehost::ItemDocument& item,
                                const fakehost::ItemRun& run = {}, int doneWithoutRoot = 0);

// The same with each write in turn taking a single byte and reporting no failure.
void expectNoShortWriteEscapes(const fakehost::ItemDocument& item,
                               const fakehost::ItemRun& run = {});

// The item broken behind each event of its document in turn. Without the item's own tag the
// request fails; from there on it is done, and `check` gets its message.
using MessageCheck = std::function<void(const fakehost::StoredMessage& message)>;
void expectItemIsFinishedWhereverTheDocumentBreaks(const fakehost::ItemDocument& item,
                                                   const fakehost::ItemRun& run,
                                                   const MessageCheck& check);

#endif
