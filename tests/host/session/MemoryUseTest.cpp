#include <gtest/gtest.h>

#include "host/memory/NativeMemory.h"
#include "host/message/MessageSpool.h"
#include "host/session/Session.h"
#include "tests/host/session/BuiltModule.h"
#include "tests/host/session/MadeArchive.h"

namespace olmhost {
namespace {

// Takes nothing.
class FullSink : public ByteSink {
public:
    bool append(std::span<const std::byte> /*bytes*/) override { return false; }
    bool overwrite(std::uint64_t /*offset*/, std::span<const std::byte> /*bytes*/) override {
        return false;
    }
};

TEST(MemoryUseTest, ModuleNeverMisusesTheHostsMemory) {
    const std::uint64_t before = NativeMemory::instance().misuseCount();
    const MadeArchive archive{
        {"a.xml", "<notes><note><OPFNoteCopyTitle>1</OPFNoteCopyTitle></note></notes>"}};
    {
        Session session;
        ASSERT_EQ(session.open(archive.path(), withBuiltModule()).status, OpenStatus::Done);
        while (!session.list([](const Row&) { return RowAnswer::Continue; })) {
        }
        FullSink full;
        EXPECT_EQ(session.extract(0, full).end, ExtractionEnd::SinkFailed);
        MessageSpool spool;
        EXPECT_EQ(session.extract(5, spool).end, ExtractionEnd::Refused);
        EXPECT_NE(session.extractAt(9, 9, spool).end, ExtractionEnd::Whole);
    }
    {
        Session session;
        EXPECT_NE(session.open("/nowhere", withBuiltModule()).status, OpenStatus::Done);
    }

    EXPECT_EQ(NativeMemory::instance().misuseCount(), before);
}

} // namespace
} // namespace olmhost
