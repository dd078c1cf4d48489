#include <cstddef>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "host/session/Session.h"
#include "tests/host/session/MadeArchive.h"

namespace olmhost {
namespace {

class Sink : public ByteSink {
public:
    bool append(std::span<const std::byte> more) override {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return true;
    }
    bool overwrite(std::uint64_t offset, std::span<const std::byte> changed) override {
        std::copy(changed.begin(), changed.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        return true;
    }

    std::vector<std::byte> bytes;
};

std::string noteDocument(const std::string& title) {
    return "<notes><note><OPFNoteCopyTitle>" + title + "</OPFNoteCopyTitle></note></notes>";
}

std::vector<std::byte> messageAt(Session& session, std::uint32_t entry) {
    Sink sink;
    EXPECT_EQ(session.extractAt(entry, 1, sink).end, ExtractionEnd::Whole);
    return sink.bytes;
}

TEST(SessionBesideTest, ExtractsTheMessagesOfTheSessionThatItWasOpenedBeside) {
    const MadeArchive archive = {{"a.xml", noteDocument("one")}, {"b.xml", noteDocument("two")}};
    Session first;
    ASSERT_EQ(first.open(archive.path()).status, OpenStatus::Done);
    Session second;
    ASSERT_EQ(second.openBeside(first).status, OpenStatus::Done);

    EXPECT_EQ(second.entryCount(), 2U);
    EXPECT_EQ(second.entryName(1), "b.xml");
    EXPECT_EQ(second.archiveSize(), std::filesystem::file_size(archive.path()));
    EXPECT_EQ(second.entrySize(1).size, noteDocument("two").size());
    EXPECT_EQ(second.entrySize(2).size, 0U);
    EXPECT_EQ(messageAt(second, 1), messageAt(first, 1));
    EXPECT_NE(messageAt(second, 1), messageAt(second, 0));
}

TEST(SessionBesideTest, ListsByItself) {
    const MadeArchive archive = {{"a.xml", noteDocument("one")}, {"b.xml", noteDocument("two")}};
    Session first;
    ASSERT_EQ(first.open(archive.path()).status, OpenStatus::Done);
    EXPECT_FALSE(first.list([](const Row&) { return RowAnswer::Pause; }));
    Session second;
    ASSERT_EQ(second.openBeside(first).status, OpenStatus::Done);

    EXPECT_TRUE(second.list([](const Row&) { return RowAnswer::Continue; }));

    EXPECT_EQ(first.itemCount(), 1U);
    EXPECT_EQ(second.itemCount(), 2U);
}

TEST(SessionBesideTest, OutlivesTheFirstSessionAndTheFilesName) {
    Session second;
    {
        const MadeArchive archive = {{"a.xml", noteDocument("one")}};
        auto first = std::make_unique<Session>();
        ASSERT_EQ(first->open(archive.path()).status, OpenStatus::Done);
        ASSERT_EQ(second.openBeside(*first).status, OpenStatus::Done);
    }

    EXPECT_FALSE(messageAt(second, 0).empty());
}

TEST(SessionBesideTest, SessionsOfOneArchiveServeThreadsConcurrently) {
    const MadeArchive archive = {{"a.xml", noteDocument("one")},
                                 {"b.xml", noteDocument("two")},
                                 {"c.xml", noteDocument("three")}};
    Session first;
    ASSERT_EQ(first.open(archive.path()).status, OpenStatus::Done);
    const std::vector<std::vector<std::byte>> expected = {messageAt(first, 0), messageAt(first, 1),
                                                          messageAt(first, 2)};
    std::vector<std::unique_ptr<Session>> sessions(4);
    std::vector<std::thread> threads;
    for (auto& session : sessions) {
        session = std::make_unique<Session>();
        ASSERT_EQ(session->openBeside(first).status, OpenStatus::Done);
        threads.emplace_back([&own = *session, &expected] {
            for (std::uint32_t turn = 0; turn < 60; ++turn) {
                EXPECT_EQ(messageAt(own, turn % 3), expected[turn % 3]);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
} // namespace olmhost
