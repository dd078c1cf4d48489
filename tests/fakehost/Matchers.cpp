#include "tests/fakehost/Matchers.h"

#include <cstdio>

#include "tests/fakehost/Text.h"

namespace fakehost {

namespace {

using testing::MatchResultListener;

std::string tagText(uint32_t tag) {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", tag);
    return text;
}

std::vector<PropertyEntry> entriesOf(const StoredMessage& message, uint32_t tag) {
    std::vector<PropertyEntry> found;
    if (!message.has("__properties_version1.0")) {
        return found;
    }
    for (const PropertyEntry& entry : message.entries()) {
        if (entry.tag == tag) {
            found.push_back(entry);
        }
    }
    return found;
}

bool hasOnly(const StoredMessage& message, const PropertyEntry& expected,
             MatchResultListener* listener) {
    const auto found = entriesOf(message, expected.tag);
    *listener << "whose entries of that tag are " << testing::PrintToString(found);
    return found.size() == 1 && found.front() == expected;
}

MATCHER_P2(HasNumberMatcher, tag, value,
           "has one entry 0x" + tagText(tag) + " of value " + testing::PrintToString(value)) {
    return hasOnly(arg, {tag, 6, value}, result_listener);
}

MATCHER_P(HasNoPropertyMatcher, tag, "has no entry 0x" + tagText(tag)) {
    const auto found = entriesOf(arg, tag);
    *result_listener << "whose entries of that tag are " << testing::PrintToString(found);
    return found.empty();
}

MATCHER_P2(HasTextMatcher, tag, text, "has the text " + inQuotes(text) + " as 0x" + tagText(tag)) {
    const Bytes expected = utf16(text);
    if (!hasOnly(arg, {tag, 6, expected.size() + 2}, result_listener)) {
        return false;
    }
    const std::string path = "__substg1.0_" + tagText(tag);
    if (!arg.has(path)) {
        *result_listener << ", without a stream";
        return false;
    }
    const Bytes stored = arg.stream(path);
    *result_listener << ", whose stream is " << testing::PrintToString(stored);
    return stored == expected;
}

} // namespace

testing::Matcher<const StoredMessage&> HasNumber(uint32_t tag, uint64_t value) {
    return HasNumberMatcher(tag, value);
}

testing::Matcher<const StoredMessage&> HasNoProperty(uint32_t tag) {
    return HasNoPropertyMatcher(tag);
}

testing::Matcher<const StoredMessage&> HasText(uint32_t tag, std::u16string_view text) {
    return HasTextMatcher(tag, std::u16string(text));
}

} // namespace fakehost
