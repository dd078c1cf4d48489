#include "filter/writers/OLMMsgTaskWriter.h"

#include <bit>

#include "filter/writers/OLMMsgTaskTags.h"

namespace {

struct CompletionMark {
    unsigned int key; // propTag of the named property
    uint64_t value;
};

// clang-format off
constexpr CompletionMark completionMarks[] = {
    {0x811C000B, 1},                            // complete
    {0x81010003, 2},                            // status: complete
    {0x81020005, std::bit_cast<uint64_t>(1.0)}, // part that is done: all
};
// clang-format on

// No element of a task tells its time zone.
constexpr int32_t noTimeZone = 0;

} // namespace

unsigned int OLMMsgTaskWriter::initilizeWriter(OLMXMLParser& parser) {
    beginMessage(parser, taskTags, "IPM.Task");
    hasRecurrence = false;
    return 0;
}

bool OLMMsgTaskWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case TaskCategories:
        handleCategories(parser, TaskCategories);
        return true;
    case TaskRecurrence:
        deferRecurrence(tag, parser);
        return true;
    case 0x81040040:
        parser.content(startText);
        handleNamedTaskDate(tag.id(), startText);
        return true;
    case 0x810F0040:
        handleTaskCompletion();
        [[fallthrough]];
    case 0x81050040:
        parser.content(endText);
        handleNamedTaskDate(tag.id(), endText);
        return true;
    default:
        return OLMMsgRecurringWriter::handlePropSpecial(tag, parser);
    }
}

void OLMMsgTaskWriter::handleNamedTaskDate(unsigned int tag, const qor::WString& text) {
    addProperty(namedProps.mapNamedProp(tag), convertDateProp(text));
}

void OLMMsgTaskWriter::handleTaskCompletion() {
    for (const CompletionMark& mark : completionMarks) {
        addProperty(namedProps.mapNamedProp(mark.key), mark.value);
    }
}

void OLMMsgTaskWriter::parseAndWriteRecur(OLMXMLParser& parser) {
    writeRecurrence(parser, 0x81160102, TaskRecurrence, noTimeZone);
}
