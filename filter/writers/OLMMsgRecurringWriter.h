#ifndef OLMKIT_FILTER_WRITERS_OLMMSGRECURRINGWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGRECURRINGWRITER_H

#include <cstdint>

#include "filter/boundary/Reader.h"
#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"

// The writer of items that may recur: appointments and tasks.
//
// A recurrence can be written only when the start, the end and the time zone of the item are known,
// and their elements may come later. So its element is skipped, and finalizeNode() returns to it.
class OLMMsgRecurringWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    ~OLMMsgRecurringWriter() override = default;

    // Writes the recurrence, if the item has one, then does what the base class does. Throws
    // qor::Exception for an invalid recurrence and for a short write of its value; then neither the
    // property stream nor the named properties are written.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

protected:
    // Saves the state of the reader for the recurrence whose opening tag is `tag`, and skips it. A
    // later recurrence replaces an earlier one.
    void deferRecurrence(const OLMXMLTag& tag, OLMXMLParser& parser);

    // Reads the recurrence, whose opening tag the reader has just read, and adds its value with
    // writeRecurrence().
    virtual void parseAndWriteRecur(OLMXMLParser& parser) = 0;

    // Adds the recurrence as the named property `key`, a MapiNamedPropKey. `closingTag` is the id
    // of the element itself, which ends it; `timeZoneOffset` is in minutes, local time less
    // universal time. When the stream of the value can't be made the property is left out. Throws
    // what OLMRecurrence throws, and ErrShortWrite.
    void writeRecurrence(OLMXMLParser& parser, unsigned int key, unsigned int closingTag,
                         int32_t timeZoneOffset);

    tagUTXMLSaveData recurrenceState{}; // after the opening tag of the recurrence
    bool hasRecurrence = false;
    qor::WString startText; // text of the item's start
    qor::WString endText;   // text of the item's end
};

#endif
