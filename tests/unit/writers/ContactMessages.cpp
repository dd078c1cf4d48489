#include "tests/unit/writers/ContactMessages.h"

using namespace fakehost;

Bytes nameEntry(uint32_t namedId, uint16_t number) {
    return le32(namedId) + hex("06 00") + le16(number);
}

Bytes keywordsEntry(uint16_t number) {
    return hex("00 00 00 00  05 00") + le16(number);
}

std::vector<Bytes> namedValues(const StoredMessage& message, uint32_t namedId) {
    std::vector<Bytes> values;
    for (const uint32_t tag : tagsOf(message, namedId)) {
        values.push_back(message.stream(valueStream(tag)));
        EXPECT_THAT(message, HasNumber(tag, values.back().size() + 2));
    }
    return values;
}

Bytes wholeAddress(const StoredMessage& message, uint32_t namedId) {
    const std::vector<Bytes> values = namedValues(message, namedId);
    if (values.size() != 1) {
        ADD_FAILURE() << values.size() << " values of a whole address";
        return {};
    }
    return values.front();
}
