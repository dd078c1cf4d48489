#include "host/session/Scan.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "filter/boundary/Archive.h"
#include "filter/boundary/Routines.h"
#include "tests/host/session/MadeArchive.h"

namespace olmhost {
namespace {

class ScanTest : public testing::Test {
protected:
    ScanTest() {
        HostStream* handle = &file;
        ArchiveOpenRequest request = {};
        file.open(&handle, OpenArchive, &request, OpenModeRead);
    }

    void putRow(std::u16string_view name) {
        scan.collector().putText(name);
        scan.collector().endCell();
        scan.breakAt(BreakRow);
    }

    MadeArchive archive{{"a", ""}, {"b", ""}, {"c", ""}};
    ArchiveFile file = ArchiveFile(archive.path());
    Scan scan = Scan(file);
    std::vector<std::u16string> names;
    RowAnswer answer = RowAnswer::Continue;
    RowCallback keepName = [this](const Row& row) {
        names.emplace_back(row.text(TextColumn::Name));
        return answer;
    };
};

TEST_F(ScanTest, IncompleteRowIsNotDeliveredAfterAFailure) {
    scan.begin(keepName);
    putRow(u"whole");
    scan.collector().putText(u"half");
    scan.collector().endCell();
    scan.bail(BailFailure);
    scan.breakAt(BreakEntry);
    putRow(u"next");
    scan.rethrow();

    EXPECT_EQ(names, (std::vector<std::u16string>{u"whole", u"next"}));
    EXPECT_EQ(scan.itemCount(), 2U);
}

TEST_F(ScanTest, FailureIsAFaultOfTheCurrentEntry) {
    scan.begin(keepName);
    scan.breakAt(BreakEntry);
    scan.breakAt(BreakEntry);
    scan.bail(BailFailure);
    scan.rethrow();

    ASSERT_EQ(file.faults().size(), 1U);
    EXPECT_EQ(file.faults()[0].entryIndex, 2U);
    EXPECT_EQ(file.faults()[0].kind, FaultKind::CannotOpen);
}

TEST_F(ScanTest, FailureWhoseReasonIsKnownAddsNoSecondFault) {
    scan.begin(keepName);
    file.addFault(FaultKind::Encrypted, 0, "needs a password");
    scan.bail(BailFailure);
    scan.rethrow();

    ASSERT_EQ(file.faults().size(), 1U);
    EXPECT_EQ(file.faults()[0].kind, FaultKind::Encrypted);
}

TEST_F(ScanTest, PauseIsRequestedOnlyAtTheEndOfTheEntry) {
    answer = RowAnswer::Pause;
    scan.begin(keepName);

    scan.collector().endCell();
    EXPECT_FALSE(scan.breakAt(BreakRow));
    EXPECT_TRUE(scan.breakAt(BreakEntry));
    EXPECT_FALSE(scan.isFinished());
    EXPECT_FALSE(scan.breakAt(BreakArchive));
    EXPECT_TRUE(scan.isFinished());
    scan.rethrow();
}

TEST_F(ScanTest, NextRunDoesNotInheritAPause) {
    answer = RowAnswer::Pause;
    scan.begin(keepName);
    putRow(u"a");
    scan.rethrow();

    scan.begin(keepName);

    EXPECT_FALSE(scan.breakAt(BreakEntry));
    scan.rethrow();
}

TEST_F(ScanTest, RowsAfterAThrowingCallbackAreDroppedAndCounted) {
    const RowCallback thrower = [this](const Row& row) -> RowAnswer {
        names.emplace_back(row.text(TextColumn::Name));
        throw std::runtime_error("enough");
    };
    scan.begin(thrower);
    putRow(u"a");
    putRow(u"b");

    EXPECT_TRUE(scan.breakAt(BreakEntry));
    EXPECT_THROW(scan.rethrow(), std::runtime_error);
    EXPECT_EQ(names, (std::vector<std::u16string>{u"a"}));
    EXPECT_EQ(scan.itemCount(), 2U);
    scan.rethrow(); // thrown once
}

TEST(ScanDeathTest, FailedLockOfARequestDoesNotReturn) {
    ArchiveFile file("/nowhere");
    Scan scan(file);

    EXPECT_DEATH(scan.bail(BailFailure), "can't lock a block");
}

} // namespace
} // namespace olmhost
