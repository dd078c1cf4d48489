#include "tests/unit/writers/MailMessages.h"

#include <algorithm>
#include <cstdio>
#include <gmock/gmock.h>

using namespace fakehost;

PropertyEntry entry(uint32_t tag, uint64_t value) {
    return {tag, 6, value};
}

Bytes headerBytes(uint32_t recipients, uint32_t attachments) {
    return le64(0) + le32(recipients) + le32(attachments) + le32(recipients) + le32(attachments) +
           le64(0);
}

Bytes requiredEntries() {
    return hex("02 01 09 10  06 00 00 00  00 00 00 00 00 00 00 00"
               "1F 00 1A 00  06 00 00 00  12 00 00 00 00 00 00 00"
               "0B 00 1F 0E  06 00 00 00  00 00 00 00 00 00 00 00"
               "03 00 F7 0F  06 00 00 00  00 00 00 00 00 00 00 00"
               "03 00 F4 0F  06 00 00 00  02 00 00 00 00 00 00 00"
               "03 00 0D 34  06 00 00 00  79 0E 04 00 00 00 00 00"
               "03 00 DE 3F  06 00 00 00  B0 04 00 00 00 00 00 00");
}

Bytes flagsEntry(uint32_t flags) {
    return hex("03 00 07 0E  06 00 00 00") + le32(flags) + le32(0);
}

namespace {

std::string numbered(const char* prefix, uint32_t number) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%08X", number);
    return std::string(prefix) + digits;
}

} // namespace

std::string recipientStorage(uint32_t number) {
    return numbered("__recip_version1.0_#", number);
}

std::string attachmentStorage(uint32_t number) {
    return numbered("__attach_version1.0_#", number);
}

std::vector<PropertyEntry> ownEntries(const StoredMessage& message) {
    std::vector<PropertyEntry> entries = message.entries();
    if (entries.size() < requiredCount + 1) {
        ADD_FAILURE() << "not even what every mail has: " << testing::PrintToString(entries);
        return {};
    }
    return {entries.begin() + static_cast<long>(requiredCount), entries.end() - 1};
}

uint64_t messageFlags(const StoredMessage& message) {
    const std::vector<PropertyEntry> entries = message.entries();
    EXPECT_EQ(std::ranges::count(entries, 0x0E070003U, &PropertyEntry::tag), 1);
    if (entries.empty() || entries.back().tag != 0x0E070003) {
        ADD_FAILURE() << "the message flags are not the last entry";
        return 0;
    }
    return entries.back().value;
}

uint32_t countStorages(const StoredMessage& message, const std::string& prefix) {
    const std::vector<std::string> names = message.names();
    return static_cast<uint32_t>(std::ranges::count_if(
        names, [&](const std::string& name) { return name.starts_with(prefix); }));
}

ItemDocument fullMail() {
    return mail()
        .open("OPFMessageCopyAttachmentList")
        .element("messageAttachment")
        .attribute("OPFAttachmentContentFileSize", "1.1E1")
        .attribute("OPFAttachmentName", "tide.csv")
        .attribute("OPFAttachmentURL", "Local/Attachments/tide.csv")
        .attribute("OPFAttachmentContentType", "text/csv")
        .attribute("OPFAttachmentContentID", "tide@sea")
        .element("messageAttachment")
        .attribute("OPFAttachmentName", "nowhere.txt")
        .close()
        .open("OPFMessageCopyBCCAddresses")
        .element("emailAddress")
        .attribute(addressAttribute, "d@x")
        .close()
        .element("OPFMessageCopyBody", "High water")
        .open("OPFMessageCopyCCAddresses")
        .element("emailAddress")
        .attribute(addressAttribute, "c@x")
        .attribute(nameAttribute, "Cy")
        .close()
        .open("OPFMessageCopyCategoryList")
        .element("category")
        .attribute("OPFCategoryCopyName", "Sea")
        .close()
        .open("OPFMessageCopyFromAddresses")
        .element("emailAddress")
        .attribute(nameAttribute, "Fay")
        .attribute(addressAttribute, "f@x")
        .close()
        .element("OPFMessageCopyGetFlagStatus", "2E0")
        .element("OPFMessageCopyHTMLBody", "<b>High</b>")
        .element("OPFMessageCopyInReplyTo", "<1@x>")
        .element("OPFMessageCopyMessageID", "<2@x>")
        .element("OPFMessageCopyModDate", "2018-06-21T00:39:08")
        .element("OPFMessageCopyReceivedTime", "1970-01-01T00:00:00Z")
        .element("OPFMessageCopyReferences", "<0@x>")
        .element("OPFMessageCopySentTime", "1970-01-01T00:00:01Z")
        .element("OPFMessageCopySubject", "AW: Tide")
        .element("OPFMessageCopyThreadTopic", "Tide")
        .open("OPFMessageCopyToAddresses")
        .element("emailAddress")
        .attribute(addressAttribute, "a@x")
        .attribute(nameAttribute, "Ann")
        .element("emailAddress")
        .attribute(addressAttribute, "b@x")
        .attribute(nameAttribute, "Bob")
        .close()
        .element("OPFMessageGetHasRichText", "1E0")
        .element("OPFMessageGetIsRead", "1E0")
        .element("OPFMessageGetPriority", "2E0")
        .element("OPFMessageGetWasSent", "0E0");
}

ItemRun tideArchive() {
    ItemRun run;
    run.archive = [](FakeHost& host) {
        host.entry("Local/Attachments/tide.csv", bytesOf("high;14:05\n"));
    };
    return run;
}

MailWriterTest::MailWriterTest() {
    request.output = host.newOutput();
}

void MailWriterTest::openDocument(const ItemDocument& item) {
    host.entry("Local/items.xml", item);
    for (const auto& [name, bytes] : entries) {
        host.entry(name, bytes);
    }
    archive = host.openArchive();
    parser.emplace(archive, 0);
    OLMXMLTag root;
    ASSERT_EQ(parser->nextTag(root), 1);
    writer.emplace(&request, archive);
}

void MailWriterTest::begin(const ItemDocument& item) {
    openDocument(item);
    ASSERT_EQ(writer->initilizeWriter(*parser), 0u);
    host.forgetCalls();
    openBefore = host.openHandles();
}

std::vector<int> MailWriterTest::run() {
    std::vector<int> progress;
    do {
        progress.push_back(writer->writeNode(*parser));
    } while (progress.back() != 100 && progress.size() < 1000);
    return progress;
}

std::vector<PropertyEntry> MailWriterTest::added() const {
    std::vector<PropertyEntry> entries;
    for (int index = static_cast<int>(requiredCount); index < writer->properties.size(); ++index) {
        const MsgPropPair* pair = writer->properties.get(index);
        entries.push_back({pair->tag, pair->flags, pair->value});
    }
    return entries;
}
