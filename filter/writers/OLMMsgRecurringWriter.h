#ifndef OLMKIT_FILTER_WRITERS_OLMMSGRECURRINGWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGRECURRINGWRITER_H

#include <cstdint>

#include "filter/boundary/Reader.h"
#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"

// A writer of items that may repeat: what appointments and tasks have in common.
//
// A recurrence can be turned only when start, end and time zone are known, and those stand anywhere
// in the item. So its element is passed over, and finalizeNode() goes back to it.
class OLMMsgRecurringWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    ~OLMMsgRecurringWriter() override = default;

    // Writes the recurrence, if the item has one, and ends as the base does. A recurrence that
    // can't be turned, or a short write of its value, throws a qor::Exception: then neither the
    // property stream nor the named properties are written.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

protected:
    // Notes the place of the recurrence whose opening tag is `tag` and passes over it. Of several
    // the last one counts.
    void deferRecurrence(const OLMXMLTag& tag, OLMXMLParser& parser);

    // Reads the recurrence, whose opening tag the reader has just read, and adds its value by
    // writeRecurrence().
    virtual void parseAndWriteRecur(OLMXMLParser& parser) = 0;

    // Adds the recurrence as the named property `key`. `closingTag` is the element's own id, which
    // ends it; `timeZoneOffset` are the minutes from universal to local time. Without the value's
    // stream there is no entry. Throws what OLMRecurrence throws, and ErrShortWrite.
    void writeRecurrence(OLMXMLParser& parser, unsigned int key, unsigned int closingTag,
                         int32_t timeZoneOffset);

    tagUTXMLSaveData recurrenceState{}; // behind the recurrence's opening tag
    bool hasRecurrence = false;
    qor::WString startText; // the item's start as its element tells it
    qor::WString endText;   // the item's end, likewise
};

#endif
