#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCALWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCALWRITER_H

#include <cstdint>

#include "filter/writers/OLMMsgRecurringWriter.h"

// Returns the RecipientType of an attendee: Cc for the number 1, Bcc for 2, and To for any other.
int mapAttendeeVal(int attendeeType);

// Writes one appointment as a message of class IPM.Appointment ([MS-OXOCAL]).
//
// The organizer and the attendees are recipients, numbered in the order of the item. Where
// addNamedProperty() or createNamedStringProp() is used, an unknown named property is left out; any
// other failure ends the item with a qor::Exception.
class OLMMsgCalWriter : public OLMMsgRecurringWriter {
public:
    using OLMMsgRecurringWriter::OLMMsgRecurringWriter;

    ~OLMMsgCalWriter() override = default;

    // Returns 0. When the reader refuses the table, the item is read with the tags that the reader
    // has. Throws what the base class throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Handles all elements except the subject, the body and the time of the last modification.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Each adds the time in the text under two tags, or nothing for an element without text.
    void handleStartDates(OLMXMLParser& parser);
    void handleEndDates(OLMXMLParser& parser);

    // Adds the time of the reminder, which is 0 for an element without text.
    void handleReminderTime(OLMXMLParser& parser);

    // Adds the minutes of the reminder; the element is in seconds. The division is unsigned: a
    // negative number becomes a huge one, which fills the 8 bytes of the entry.
    void handleReminderDelta(OLMXMLParser& parser);

    // Adds whether there is a reminder.
    void handleHasReminder(OLMXMLParser& parser);

    // Adds the location, even an empty one.
    void handleLocation(OLMXMLParser& parser);

    // Adds the sensitivity of a private appointment, or nothing for another one.
    void handleSensitivity(OLMXMLParser& parser);

    // Adds the busy status.
    void handleStatus(OLMXMLParser& parser);

    // Adds the mark of an all-day appointment, or nothing for another one.
    void handleAllDay(OLMXMLParser& parser);

    // Adds the whole text as the description of the time zone, and reads the offset from it when it
    // has a sign.
    void handleTimeZone(OLMXMLParser& parser);

    // Writes the organizer as the next recipient, even an empty one. The text is both address and
    // name.
    void addOrganizer(OLMXMLParser& parser);

    // Writes every opening tag up to the end of the list as a recipient, whatever its name is.
    void handleAttendees(OLMXMLParser& parser);

    // Writes the attendee that the tag describes as the next recipient, even without attributes.
    void addNormalAttendee(const OLMXMLTag& tag);

    void parseAndWriteRecur(OLMXMLParser& parser) override;

    int32_t timeZoneOffset =
        0; // in minutes, local time less universal time, without daylight saving

private:
    void addTwice(unsigned int namedTag, unsigned int tag, const qor::WString& text);
};

#endif
