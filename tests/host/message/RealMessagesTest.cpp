// Messages that the module wrote, intact and damaged.

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "host/message/Message.h"
#include "host/message/MessageSpool.h"
#include "host/message/OneOffEntryId.h"
#include "host/message/Recurrence.h"
#include "host/session/Session.h"
#include "tests/host/compound/CompoundFiles.h"
#include "tests/host/session/BuiltModule.h"

namespace olmhost::test {
namespace {

// Returns the message of each item of the sample.
std::vector<Bytes> messagesOfTheSample() {
    Session session;
    const std::string archive =
        std::string(std::getenv("OLMKIT_SOURCE_DIR")) + "/examples/sample.olm";
    if (session.open(archive, withBuiltModule()).status != OpenStatus::Done) {
        throw std::runtime_error("the sample can't be opened");
    }
    while (!session.list([](const Row&) { return RowAnswer::Continue; })) {
    }
    std::vector<Bytes> messages;
    for (std::uint64_t index = 0; index < session.itemCount(); ++index) {
        MessageSpool spool;
        if (session.extract(index, spool).end != ExtractionEnd::Whole) {
            throw std::runtime_error("an item of the sample can't be extracted");
        }
        messages.emplace_back(spool.contents().begin(), spool.contents().end());
    }
    return messages;
}

// Reads everything. Returns the bytes of all values.
std::size_t readAll(const Message& message) {
    std::size_t total = 0;
    const auto readPart = [&](const Message::Properties& properties) {
        for (const Property& property : properties) {
            total += message.numbers(property).size();
            for (const ValueStream& value : property.values) {
                const Bytes bytes = message.bytes(value, value.size);
                EXPECT_EQ(bytes.size(), value.size);
                total += bytes.size();
                EXPECT_LE(message.text(property, value).size(), bytes.size());
                decodeOneOffEntryId(bytes);
                std::string failure;
                decodeRecurrence(bytes, failure);
            }
        }
    };
    readPart(message.properties());
    for (const auto& recipient : message.recipients()) {
        readPart(recipient);
    }
    for (const auto& attachment : message.attachments()) {
        readPart(attachment);
    }
    return total;
}

// Any bytes are refused with a reason, or read; several entries may have the same stream.
void expectNoHarm(const Bytes& file) {
    std::string failure;
    const auto message = Message::open(file, failure);
    if (message == nullptr) {
        EXPECT_FALSE(failure.empty());
    } else {
        EXPECT_LE(readAll(*message), file.size() * file.size());
    }
}

TEST(RealMessagesTest, EveryMessageOfTheSampleIsRead) {
    const auto messages = messagesOfTheSample();
    ASSERT_EQ(messages.size(), 13U);
    for (const Bytes& file : messages) {
        std::string failure;
        const auto message = Message::open(file, failure);
        ASSERT_NE(message, nullptr) << failure;
        EXPECT_GT(readAll(*message), 0U);
        for (const Property& property : message->properties()) {
            EXPECT_EQ(property.fault, "");
            EXPECT_EQ(property.name.has_value(), property.id() >= 0x8000);
        }
    }
}

TEST(RealMessagesTest, AnyChangedByteIsHarmless) {
#ifdef __SANITIZE_ADDRESS__
    constexpr std::size_t stride = 11; // every byte would take minutes there
#else
    constexpr std::size_t stride = 1;
#endif
    for (const Bytes& whole : messagesOfTheSample()) {
        Bytes file = whole;
        for (std::size_t place = 0; place < file.size(); place += stride) {
            const unsigned flipped = place % 2 == 0 ? 0x01 : 0xFF;
            file[place] = whole[place] ^ static_cast<std::byte>(flipped);
            expectNoHarm(file);
            file[place] = whole[place];
        }
    }
}

TEST(RealMessagesTest, AnyTruncationIsHarmless) {
    for (const Bytes& whole : messagesOfTheSample()) {
        Bytes file = whole;
        constexpr std::size_t step = 61; // bytes
        while (file.size() > step) {
            file.resize(file.size() - step);
            expectNoHarm(file);
        }
    }
}

} // namespace
} // namespace olmhost::test
