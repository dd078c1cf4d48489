#include "filter/writers/OLMMsgRecurringWriter.h"

#include "filter/recurrence/OLMRecurrence.h"
#include "filter/recurrence/RecurrenceValue.h"
#include "filter/storage/OpenHandle.h"

unsigned int OLMMsgRecurringWriter::finalizeNode(OLMXMLParser& parser) {
    if (hasRecurrence) {
        parser.setParserState(&recurrenceState);
        parseAndWriteRecur(parser);
    }
    return OLMMsgWriter::finalizeNode(parser);
}

void OLMMsgRecurringWriter::deferRecurrence(const OLMXMLTag& tag, OLMXMLParser& parser) {
    parser.getParserState(&recurrenceState);
    parser.skipTag(tag);
    hasRecurrence = true;
}

void OLMMsgRecurringWriter::writeRecurrence(OLMXMLParser& parser, unsigned int key,
                                            unsigned int closingTag, int32_t timeZoneOffset) {
    OLMRecurrence recurrence(parser, startText, endText, timeZoneOffset);
    recurrence.parseRecurrence(parser, closingTag);

    const unsigned int tag = namedProps.mapNamedProp(key);
    const OpenHandle stream(createSubStreamFromProp(rootStorage, tag));
    if (stream != nullptr) {
        addProperty(tag, writeRecurrenceValue(stream.get(), recurrence));
    }
}
