#include "filter/writers/OLMMsgTaskWriter.h"

#include <bit>

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/writers/OLMMsgTaskTags.h"

namespace {

struct CompletionMark {
    MapiNamedPropKey key;
    uint64_t value;
};

// clang-format off
constexpr CompletionMark completionMarks[] = {
    {PidLidTaskComplete,    1},
    {PidLidTaskStatus,      2}, // complete
    {PidLidPercentComplete, std::bit_cast<uint64_t>(1.0)},
};
// clang-format on

// No element of a task contains its time zone.
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
    case PidLidTaskStartDate:
        parser.content(startText);
        handleNamedTaskDate(tag.id(), startText);
        return true;
    case PidLidTaskDateCompleted:
        handleTaskCompletion();
        [[fallthrough]];
    case PidLidTaskDueDate:
        parser.content(endText);
        handleNamedTaskDate(tag.id(), endText);
        return true;
    default:
        return OLMMsgRecurringWriter::handlePropSpecial(tag, parser);
    }
}

void OLMMsgTaskWriter::handleNamedTaskDate(unsigned int key, const qor::WString& text) {
    addProperty(namedProps.mapNamedProp(key), convertDateProp(text));
}

void OLMMsgTaskWriter::handleTaskCompletion() {
    for (const CompletionMark& mark : completionMarks) {
        addProperty(namedProps.mapNamedProp(mark.key), mark.value);
    }
}

void OLMMsgTaskWriter::parseAndWriteRecur(OLMXMLParser& parser) {
    writeRecurrence(parser, PidLidTaskRecurrence, TaskRecurrence, noTimeZone);
}
