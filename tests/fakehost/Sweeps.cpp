#include "tests/fakehost/Sweeps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fakehost {

namespace {

using testing::AnyOf;

void expectResultAndStatus(const Outcome& outcome) {
    EXPECT_THAT(outcome.result, AnyOf(VwSpecialDone, VwSpecialFailed));
    const bool isDone = outcome.result == VwSpecialDone;
    EXPECT_EQ(outcome.status, isDone ? 0 : VwSpecialStatusFailed);
    EXPECT_EQ(outcome.message.isRootClosed(), isDone && outcome.message.hasRoot());
}

} // namespace

// A reader that can't be prepared leaves its entry open until the archive is closed. That happens
// before the writer, for two calls: the reader's init and, with the reader open, its first tag map.
void expectNoHostFailureEscapes(const ItemDocument& item, const ItemRun& run, int doneWithoutRoot,
                                int32_t status) {
    const int callCount = countHostCalls(item, run);
    ASSERT_GT(callCount, 0);
    int failedRequests = 0;
    int failedReaders = 0;
    int openReaders = 0;
    int rootless = 0;

    for (int failing = 0; failing < callCount; ++failing) {
        SCOPED_TRACE(testing::Message() << "failing host call " << failing);
        bool hasFailed = false;
        ItemRun failingRun = run;
        failingRun.inspect = [&](FakeHost& host) { hasFailed = host.hasFailed(); };

        const Outcome outcome = extractWithFailure(item, failing, failingRun, status);

        EXPECT_TRUE(hasFailed);
        expectResultAndStatus(outcome);
        const bool isDone = outcome.result == VwSpecialDone;
        failedRequests += isDone ? 0 : 1;
        rootless += isDone && !outcome.message.hasRoot() ? 1 : 0;
        if (!isDone && !outcome.message.hasRoot() && outcome.openHandles == 1) {
            ++failedReaders;
            openReaders += outcome.openReaders;
            EXPECT_EQ(outcome.lockedBlocks, 0);
            continue;
        }
        expectReleased(outcome);
    }
    EXPECT_EQ(failedReaders, 2);
    EXPECT_EQ(openReaders, 1);
    EXPECT_EQ(rootless, doneWithoutRoot);
    EXPECT_GT(failedRequests, failedReaders);
    EXPECT_LT(failedRequests, callCount);
}

void expectNoShortWriteEscapes(const ItemDocument& item, const ItemRun& run) {
    int writes = 0;
    ItemRun counting = run;
    counting.inspect = [&](FakeHost& host) { writes = host.countOf(CallKind::Write); };
    extractItem(item, counting);
    ASSERT_GT(writes, 0);

    for (int failing = 0; failing < writes; ++failing) {
        SCOPED_TRACE(testing::Message() << "short write " << failing);
        ItemRun failingRun = run;
        failingRun.prepare = [&](FakeHost& host) {
            if (run.prepare) {
                run.prepare(host);
            }
            host.shortenWrite(failing, 1, 0);
        };

        const Outcome outcome = extractItem(item, failingRun);

        expectResultAndStatus(outcome);
        expectReleased(outcome);
    }
}

void expectItemIsFinishedWhereverTheDocumentBreaks(const ItemDocument& item, const ItemRun& run,
                                                   const MessageCheck& check) {
    for (size_t count = 0; count <= item.eventCount(); ++count) {
        SCOPED_TRACE(testing::Message() << "broken after event " << count);

        const Outcome outcome = extractItem(item.cutAfter(count), run);

        // The item's own tag is the second event.
        const bool hasItem = count >= 2;
        EXPECT_EQ(outcome.result, hasItem ? VwSpecialDone : VwSpecialFailed);
        expectResultAndStatus(outcome);
        expectReleased(outcome);
        if (hasItem) {
            EXPECT_EQ(outcome.progress.back(), 100);
            check(outcome.message);
        }
    }
}

} // namespace fakehost
