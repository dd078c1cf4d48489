#include "tests/fakehost/Extraction.h"

#include <gtest/gtest.h>

namespace fakehost {

namespace {

constexpr size_t endlessSteps = 1'000'000;

struct Progress {
    std::vector<int32_t>& values;
    const ProgressAnswer& answer;
};

int32_t onProgress(void* data, int32_t value) {
    Progress& progress = *static_cast<Progress*>(data);
    progress.values.push_back(value);
    if (progress.values.size() > endlessSteps) {
        ADD_FAILURE() << "the extraction does not end";
        return 1;
    }
    return progress.answer ? progress.answer(value) : 0;
}

// A request in a block of the host, as the module requires it.
class Request {
public:
    explicit Request(const SODOSPECIALARC& record) : handle(SYSNativeAlloc(sizeof record)) {
        *static_cast<SODOSPECIALARC*>(SYSNativeLock(handle)) = record;
        SYSNativeUnlock(handle);
    }
    ~Request() { SYSNativeFree(handle); }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    const uint64_t handle;
};

SODOSPECIALARC emptyRequest() {
    SODOSPECIALARC record{};
    // Neither the size nor the reserved bytes are read.
    std::fill(std::begin(record.reserved0), std::end(record.reserved0), uint8_t{0xC3});
    record.locator.size = 0xBAD;
    return record;
}

Outcome run(Scan& scan, SODOSPECIALARC record, bool withCallback, const ProgressAnswer& answer,
            const std::function<void(FakeHost&)>& prepare) {
    FakeHost& host = scan.host();
    Outcome outcome;
    record.output = host.newOutput();
    const Request request(record);
    const int handlesBefore = host.openHandles();
    const int readersBefore = host.openReaders();
    const int locksBefore = host.lockedBlocks();
    Progress progress{outcome.progress, answer};

    host.resetCallCount();
    if (prepare) {
        prepare(host);
    }
    outcome.result = VwDoSpecial(0, request.handle, withCallback ? onProgress : nullptr, &progress,
                                 &outcome.status, 0, scan.proc());
    host.failNothing();

    outcome.handlesLeftOpen = host.openHandles() - handlesBefore;
    outcome.openReaders = host.openReaders() - readersBefore;
    outcome.lockedBlocks = host.lockedBlocks() - locksBefore;
    outcome.message = host.message(record.output);
    outcome.outputBytes = host.outputBytes(record.output);
    host.endOutput(record.output);
    outcome.openHandles = host.openHandles() - handlesBefore;
    return outcome;
}

SODOSPECIALARC byIndex(int32_t index) {
    SODOSPECIALARC record = emptyRequest();
    record.flags = 0xFFFFFFFEU; // all bits except SpecialByLocation
    record.itemIndex = index;
    record.locator.entryIndex = 0x7BAD;
    record.locator.itemNumber = 0x7BAD;
    return record;
}

SODOSPECIALARC byLocation(uint32_t entry, uint32_t item) {
    SODOSPECIALARC record = emptyRequest();
    record.flags = SpecialByLocation;
    record.itemIndex = -77;
    record.locator.entryIndex = entry;
    record.locator.itemNumber = item;
    return record;
}

} // namespace

Outcome extractIndex(Scan& scan, int32_t index, const ProgressAnswer& answer) {
    return run(scan, byIndex(index), true, answer, {});
}

Outcome extractAt(Scan& scan, uint32_t entry, uint32_t item, const ProgressAnswer& answer) {
    return run(scan, byLocation(entry, item), true, answer, {});
}

Outcome extractIndexWithoutCallback(Scan& scan, int32_t index) {
    return run(scan, byIndex(index), false, {}, {});
}

Outcome extractItem(const ItemDocument& document, const ItemRun& itemRun) {
    FakeHost host;
    host.entry("Local/items.xml", document);
    if (itemRun.archive) {
        itemRun.archive(host);
    }
    Scan scan(host);
    EXPECT_EQ(scan.open(), VwOpenDone);
    host.forgetCalls();
    Outcome outcome = run(scan, byLocation(0, 1), true, itemRun.answer, itemRun.prepare);
    if (itemRun.inspect) {
        itemRun.inspect(host);
    }
    return outcome;
}

void expectReleased(const Outcome& outcome) {
    EXPECT_EQ(outcome.openReaders, 0);
    EXPECT_EQ(outcome.lockedBlocks, 0);
    EXPECT_EQ(outcome.openHandles, 0) << "after the end of the output";
}

StoredMessage writeItem(const ItemDocument& document, const ItemRun& itemRun) {
    const Outcome outcome = extractItem(document, itemRun);
    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.message.isRootClosed());
    expectReleased(outcome);
    return outcome.message;
}

int countHostCalls(const ItemDocument& document, const ItemRun& itemRun) {
    int count = 0;
    ItemRun counting = itemRun;
    counting.inspect = [&](FakeHost& host) { count = host.hostCallCount(); };
    extractItem(document, counting);
    return count;
}

Outcome extractWithFailure(const ItemDocument& document, int failing, const ItemRun& itemRun,
                           int32_t status) {
    ItemRun failingRun = itemRun;
    failingRun.prepare = [&](FakeHost& host) {
        if (itemRun.prepare) {
            itemRun.prepare(host);
        }
        host.failAnyCall(failing, status);
    };
    return extractItem(document, failingRun);
}

} // namespace fakehost
