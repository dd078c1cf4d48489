#include "host/session/AttachmentLedger.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session/Session.h"
#include "tests/host/compound/CompoundFiles.h"
#include "tests/host/session/BuiltModule.h"
#include "tests/host/session/MadeArchive.h"

namespace olmhost::test {

namespace {

using testing::ElementsAre;
using testing::Pair;

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

std::string document(const std::string& attachments) {
    return "<emails><email><OPFMessageCopyAttachmentList>" + attachments +
           "</OPFMessageCopyAttachmentList></email></emails>";
}

std::string attachment(const std::string& attributes) {
    return "<messageAttachment " + attributes + "/>";
}

// An attachment's bytes as the listener received them.
struct Heard {
    std::vector<std::pair<std::size_t, std::string>> attachments;

    AttachmentBytes listener() {
        return [this](std::size_t attachment, std::span<const std::byte> bytes) {
            if (attachments.empty() || attachments.back().first != attachment) {
                attachments.emplace_back(attachment, "");
            }
            attachments.back().second.append(reinterpret_cast<const char*>(bytes.data()),
                                             bytes.size());
        };
    }
};

// Extracts the first item of an archive whose first entry is its document.
Extraction extractFirst(const MadeArchive& archive, const AttachmentBytes& listener = nullptr) {
    Session session;
    const OpenOutcome outcome = session.open(archive.path(), withBuiltModule());
    EXPECT_EQ(outcome.status, OpenStatus::Done) << outcome.text;
    MemorySink sink;
    return session.extractAt(0, 1, sink, nullptr, listener);
}

TEST(AttachmentLedgerTest, MailHasNameSizeAndSourceOfEachAttachment) {
    const MadeArchive archive{
        {"a.xml",
         document(attachment("OPFAttachmentURL=\"x/1\" OPFAttachmentName=\"tide table.csv\"") +
                  attachment("OPFAttachmentURL=\"x/2\" OPFAttachmentName=\"\xE6\xBD\xAE.txt\""))},
        {"x/1", "twelve bytes"},
        {"x/2", std::string(70'000, 'w')},
    };
    Heard heard;
    const Extraction extraction = extractFirst(archive, heard.listener());

    EXPECT_EQ(extraction.end, ExtractionEnd::Whole);
    ASSERT_EQ(extraction.attachments.size(), 2U);
    EXPECT_EQ(extraction.attachments[0].name, u"tide table.csv");
    EXPECT_EQ(extraction.attachments[0].member, 0U);
    EXPECT_EQ(extraction.attachments[0].size, 12U);
    EXPECT_EQ(extraction.attachments[1].name, u"\u6F6E.txt");
    EXPECT_EQ(extraction.attachments[1].member, 1U);
    EXPECT_EQ(extraction.attachments[1].size, 70'000U);
    EXPECT_THAT(heard.attachments,
                ElementsAre(Pair(0, "twelve bytes"), Pair(1, std::string(70'000, 'w'))));
}

TEST(AttachmentLedgerTest, AttachmentWithoutUrlHasNoSourceAndAffectsNoOther) {
    const MadeArchive archive{
        {"a.xml",
         document(attachment("OPFAttachmentName=\"first\"") +
                  attachment("OPFAttachmentURL=\"there\"") + attachment("") +
                  attachment("OPFAttachmentURL=\"gone\"") + attachment("OPFAttachmentURL=\"\"") +
                  attachment("") + attachment("OPFAttachmentURL=\"there\""))},
        {"there", "here"},
    };
    Heard heard;
    const Extraction extraction = extractFirst(archive, heard.listener());

    ASSERT_EQ(extraction.members.size(), 4U);
    EXPECT_EQ(extraction.members[1].name, "gone");
    EXPECT_EQ(extraction.members[2].name, "");
    std::vector<std::optional<std::size_t>> members;
    std::vector<std::optional<std::uint64_t>> sizes;
    for (const AttachmentAccount& account : extraction.attachments) {
        members.push_back(account.member);
        sizes.push_back(account.size);
    }
    const auto none = std::nullopt;
    EXPECT_EQ(members, (std::vector<std::optional<std::size_t>>{none, 0, none, 1, 2, none, 3}));
    EXPECT_EQ(sizes,
              (std::vector<std::optional<std::uint64_t>>{none, 4, none, none, none, none, 4}));
    // Without a source an attachment has no name either.
    EXPECT_EQ(extraction.attachments[0].name, u"");
    EXPECT_THAT(heard.attachments, ElementsAre(Pair(1, "here"), Pair(6, "here")));
}

TEST(AttachmentLedgerTest, EmptyAttachmentHasASizeOfZero) {
    const MadeArchive archive{{"a.xml", document(attachment("OPFAttachmentURL=\"empty\""))},
                              {"empty", ""}};
    const Extraction extraction = extractFirst(archive);

    ASSERT_EQ(extraction.attachments.size(), 1U);
    EXPECT_EQ(extraction.attachments[0].size, 0U);
    EXPECT_EQ(extraction.attachments[0].member, 0U);
}

TEST(AttachmentLedgerTest, LongNameIsCutAtItsLimit) {
    const MadeArchive archive{
        {"a.xml", document(attachment("OPFAttachmentURL=\"there\" OPFAttachmentName=\"" +
                                      std::string(5000, 'n') + "\""))},
        {"there", "here"}};
    const Extraction extraction = extractFirst(archive);

    ASSERT_EQ(extraction.attachments.size(), 1U);
    EXPECT_EQ(extraction.attachments[0].name, std::u16string(2048, u'n'));
}

TEST(AttachmentLedgerTest, ItemWithoutAttachmentsHasAnEmptyAccount) {
    const MadeArchive archive{{"a.xml", "<notes><note/></notes>"}};

    EXPECT_TRUE(extractFirst(archive).attachments.empty());
}

TEST(AttachmentLedgerTest, ExceptionOfTheListenerLeavesTheExtractionAndTheSessionContinues) {
    const MadeArchive archive{{"a.xml", document(attachment("OPFAttachmentURL=\"there\""))},
                              {"there", "here"}};
    Session session;
    ASSERT_EQ(session.open(archive.path(), withBuiltModule()).status, OpenStatus::Done);
    MemorySink lost;
    const AttachmentBytes refusing = [](std::size_t, std::span<const std::byte>) {
        throw std::runtime_error("enough");
    };

    EXPECT_THROW(session.extractAt(0, 1, lost, nullptr, refusing), std::runtime_error);

    MemorySink sink;
    Heard heard;
    EXPECT_EQ(session.extractAt(0, 1, sink, nullptr, heard.listener()).end, ExtractionEnd::Whole);
    EXPECT_THAT(heard.attachments, ElementsAre(Pair(0, "here")));
}

TEST(AttachmentLedgerTest, OnlyStoragesOfAttachmentsInTheRootCount) {
    ReadAccount reading;
    const AttachmentBytes nobody;
    AttachmentLedger ledger(reading, nobody);
    MemorySink sink;
    CompoundOutput output(sink, &ledger);
    HostStream* root = createRoot(output);
    HostStream* recipient = createStorage(root, u"__recip_version1.0_#00000000");
    addStream(recipient, u"__substg1.0_3704001F", bytesOf("r\0"));
    HostStream* inner = createStorage(recipient, u"__attach_version1.0_#00000000");
    addStream(inner, u"__substg1.0_37010102", bytesOf("inner"));
    HostStream* storage = createStorage(root, u"__attach_version1.0_#00000000");
    reading.members.push_back(std::make_shared<MemberRead>());
    addStream(storage, u"__substg1.0_37020102", bytesOf("other"));
    addStream(root, u"__substg1.0_37010102", bytesOf("root"));
    addStream(storage, u"__substg1.0_37010102", bytesOf("data"));

    const std::vector<AttachmentAccount> accounts = ledger.take();

    ASSERT_EQ(accounts.size(), 1U);
    EXPECT_EQ(accounts[0].size, 4U);
    EXPECT_EQ(accounts[0].member, 0U);
    EXPECT_EQ(accounts[0].name, u"");
}

TEST(AttachmentLedgerTest, BytesThatTheOutputRefusesAreNotCounted) {
    Heard heard;
    const AttachmentBytes listener = heard.listener();
    const ReadAccount reading;
    AttachmentLedger ledger(reading, listener);
    MemorySink sink(1);
    CompoundOutput output(sink, &ledger);
    HostStream* storage = createStorage(createRoot(output), u"__attach_version1.0_#00000000");
    HostStream* data = createStream(storage, u"__substg1.0_37010102");

    std::uint64_t taken = 0;
    while (write(data, pattern(4096, 1))) {
        taken += 4096;
        ASSERT_LT(taken, 1U << 24);
    }

    ASSERT_GT(taken, 0U);
    EXPECT_EQ(ledger.take().at(0).size, taken);
    EXPECT_EQ(heard.attachments.at(0).second.size(), taken);
}

} // namespace

} // namespace olmhost::test
