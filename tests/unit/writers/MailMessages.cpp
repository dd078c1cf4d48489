#include "tests/unit/writers/MailMessages.h"

#include <algorithm>

using namespace fakehost;

Bytes flagsEntry(uint32_t flags) {
    return hex("03 00 07 0E  06 00 00 00") + le32(flags) + le32(0);
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
