#include "tests/unit/recurrence/ParsedRecurrence.h"

#include "tests/unit/storage/Thrown.h"

using fakehost::Bytes;
using fakehost::ItemDocument;

namespace {

constexpr UTXML_STRVALPAIR itemTags[] = {
    {ParsedRecurrence::closingTag, "OPFCalendarEventCopyRecurrence"}};

qor::WString wideText(const std::string& text) {
    return qor::WString(text.c_str());
}

int32_t keepBytes(HostStream* handle, const void* data, uint32_t size, uint32_t* bytesWritten) {
    Bytes& bytes = static_cast<ByteSink*>(handle)->bytes;
    const auto* first = static_cast<const uint8_t*>(data);
    bytes.insert(bytes.end(), first, first + size);
    *bytesWritten = size;
    return 0;
}

} // namespace

ItemDocument recurrence() {
    return fakehost::document("appointments").open("OPFCalendarEventCopyRecurrence");
}

ItemDocument patterned(const std::string& pattern, const std::string& interval) {
    return recurrence()
        .element("OPFRecurrenceCopyStartDate", "2011-05-02T05:00:00")
        .element("OPFRecurrencePatternInterval", interval)
        .element("OPFRecurrencePatternType", "OPFRecurrencePattern" + pattern);
}

ByteSink::ByteSink() : HostStream{} {
    write = keepBytes;
}

ParsedRecurrence::ParsedRecurrence(const ItemDocument& document, const RecurringItem& item) {
    fakeHost.entry("items.xml", document);
    parser = std::make_unique<OLMXMLParser>(fakeHost.openArchive(), 0);
    parser->addTags(itemTags, std::size(itemTags));
    OLMXMLTag tag;
    while (tag.id() != closingTag && parser->nextTag(tag) != 0) {
    }
    object = std::make_unique<OLMRecurrence>(*parser, wideText(item.start), wideText(item.end),
                                             item.zoneOffset);
}

std::optional<unsigned int> ParsedRecurrence::parse() {
    return thrownCode([&] { object->parseRecurrence(*parser, closingTag); });
}

ParsedRecurrence& ParsedRecurrence::parsed() {
    EXPECT_EQ(parse(), std::nullopt);
    return *this;
}

Bytes ParsedRecurrence::value() const {
    ByteSink sink;
    sink.bytes.reserve(84);
    const uint64_t size = writeRecurrenceValue(&sink, *object);
    EXPECT_EQ(size, sink.bytes.size());
    return std::move(sink.bytes);
}
