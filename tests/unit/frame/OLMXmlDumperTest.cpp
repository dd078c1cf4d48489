#include <memory>

#include <gmock/gmock.h>

#include "tests/fakehost/Extraction.h"
#include "tests/fakehost/Text.h"

namespace {

using fakehost::Bytes;
using fakehost::CallKind;
using fakehost::document;
using fakehost::extractAt;
using fakehost::FakeHost;
using fakehost::Outcome;
using fakehost::patternBytes;
using fakehost::ProgressAnswer;
using fakehost::Scan;
using testing::ElementsAre;

// Returns an answer that cancels at the `count`-th value.
ProgressAnswer cancelAfter(int count) {
    auto left = std::make_shared<int>(count);
    return [left](int32_t) { return --*left == 0; };
}

// Extracts from an entry of a kind that has no writer.
class OLMXmlDumperTest : public testing::Test {
protected:
    Outcome dump(const Bytes& bytes, const ProgressAnswer& answer, uint32_t item = 1) {
        host.entry("a.xml", document("categories").element("category"), bytes);
        scan = std::make_unique<Scan>(host);
        scan->open();
        host.forgetCalls();
        return extractAt(*scan, 0, item, answer);
    }

    std::vector<std::string> streamCalls() const {
        std::vector<std::string> calls;
        for (const fakehost::HostCall& call : host.calls()) {
            if (call.kind == CallKind::Seek || call.kind == CallKind::Read ||
                call.kind == CallKind::Write) {
                calls.push_back(call.text);
            }
        }
        return calls;
    }

    static void expectCancelled(const Outcome& outcome) {
        EXPECT_EQ(outcome.result, VwSpecialDone);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_FALSE(outcome.message.hasRoot());
        EXPECT_EQ(outcome.handlesLeftOpen, 0);
        fakehost::expectReleased(outcome);
    }

    FakeHost host;
    std::unique_ptr<Scan> scan;
};

TEST_F(OLMXmlDumperTest, EntryIsCopiedInPiecesOf1024Bytes) {
    const Bytes bytes = patternBytes(2500);

    const Outcome outcome = dump(bytes, cancelAfter(1));

    expectCancelled(outcome);
    EXPECT_EQ(outcome.outputBytes, bytes);
    EXPECT_THAT(outcome.progress, ElementsAre(0));
    EXPECT_THAT(streamCalls(), ElementsAre("seek(entry a.xml, 0, 0)", "read(entry a.xml, 0x400)",
                                           "write(output, 0x400)", "read(entry a.xml, 0x400)",
                                           "write(output, 0x400)", "read(entry a.xml, 0x400)",
                                           "write(output, 452)", "read(entry a.xml, 0x400)"));
}

TEST_F(OLMXmlDumperTest, EntryIsCopiedAgainUntilTheCallbackCancels) {
    const Bytes bytes = patternBytes(1024);

    const Outcome outcome = dump(bytes, cancelAfter(3));

    expectCancelled(outcome);
    EXPECT_EQ(outcome.outputBytes, bytes + bytes + bytes);
    EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 0));
}

TEST_F(OLMXmlDumperTest, EmptyEntryWritesNothing) {
    const Outcome outcome = dump({}, cancelAfter(2));

    expectCancelled(outcome);
    EXPECT_TRUE(outcome.outputBytes.empty());
    EXPECT_EQ(host.countOf(CallKind::Write), 0);
}

TEST_F(OLMXmlDumperTest, WholeEntryIsCopiedWhateverTheItemsNumber) {
    const Bytes bytes = patternBytes(10);
    for (const uint32_t item : {1U, 2U, 3U, 0xFFFFFFFFU}) {
        FakeHost own;
        own.entry("a.xml", document("categories").element("category"), bytes);
        Scan fresh(own);
        fresh.open();

        const Outcome outcome = extractAt(fresh, 0, item, cancelAfter(1));

        expectCancelled(outcome);
        EXPECT_EQ(outcome.outputBytes, bytes);
    }
}

TEST_F(OLMXmlDumperTest, ShortWriteIsReportedAndTheCopyStartsOver) {
    const Bytes bytes = patternBytes(1500);
    host.shortenWrite(0, 100);

    const Outcome outcome = dump(bytes, cancelAfter(2));

    expectCancelled(outcome);
    EXPECT_THAT(outcome.progress, ElementsAre(-15, 0));
    EXPECT_EQ(outcome.outputBytes, bytes.part(0, 100) + bytes);
}

TEST_F(OLMXmlDumperTest, FailedWriteIsIgnored) {
    const Bytes bytes = patternBytes(2500);
    host.failCall(CallKind::Write, 1, -5);

    const Outcome outcome = dump(bytes, cancelAfter(1));

    expectCancelled(outcome);
    EXPECT_THAT(outcome.progress, ElementsAre(0));
    EXPECT_EQ(outcome.outputBytes, bytes.part(0, 1024) + bytes.part(2048, 452));
}

TEST_F(OLMXmlDumperTest, ShortWriteWithAFailureIsIgnored) {
    const Bytes bytes = patternBytes(2048);
    host.shortenWrite(0, 7, -5);

    const Outcome outcome = dump(bytes, cancelAfter(1));

    expectCancelled(outcome);
    EXPECT_THAT(outcome.progress, ElementsAre(0));
    EXPECT_EQ(outcome.outputBytes, bytes.part(0, 7) + bytes.part(1024, 1024));
}

TEST_F(OLMXmlDumperTest, FailedReadEndsTheCopy) {
    const Bytes bytes = patternBytes(2500);
    host.failCall(CallKind::Read, 1, -5);

    const Outcome outcome = dump(bytes, cancelAfter(1));

    expectCancelled(outcome);
    EXPECT_THAT(outcome.progress, ElementsAre(0));
    EXPECT_EQ(outcome.outputBytes, bytes.part(0, 1024));
}

} // namespace
