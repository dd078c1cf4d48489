#ifndef OLMKIT_TESTS_FAKEHOST_MATCHERS_H
#define OLMKIT_TESTS_FAKEHOST_MATCHERS_H

#include <gmock/gmock.h>

#include "tests/fakehost/StoredMessage.h"

namespace fakehost {

// Matches a message whose property stream has exactly one entry of `tag`, with flags 6 and `value`.
testing::Matcher<const StoredMessage&> HasNumber(uint32_t tag, uint64_t value);

// Matches a message without an entry of `tag`.
testing::Matcher<const StoredMessage&> HasNoProperty(uint32_t tag);

// Matches a message with exactly one entry of `tag`, of type 0x001F, whose stream holds `text` and
// whose size counts the missing terminator.
testing::Matcher<const StoredMessage&> HasText(uint32_t tag, std::u16string_view text);

} // namespace fakehost

#endif
