#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCALWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCALWRITER_H

#include <cstdint>

#include "filter/writers/OLMMsgRecurringWriter.h"

// The recipient type of an attendee: 2 for the number 1, 3 for 2, 1 for any other.
int mapAttendeeVal(int attendeeType);

// Turns one appointment into a message of class IPM.Appointment.
//
// Organizer and attendees are recipients, numbered as they stand in the item. Six handlers leave a
// named property out that the message can't map and go on with the item; every other failure of a
// handler ends the item with a qor::Exception.
class OLMMsgCalWriter : public OLMMsgRecurringWriter {
public:
    using OLMMsgRecurringWriter::OLMMsgRecurringWriter;

    ~OLMMsgCalWriter() override = default;

    // 0. A refused table is let pass: the item goes on with the tags that the reader knows. Throws
    // what the base throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Takes all but the subject, the body and the time of the last modification.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Each adds the text's time under two tags; nothing for an element without text.
    void handleStartDates(OLMXMLParser& parser);
    void handleEndDates(OLMXMLParser& parser);

    // Adds the reminder's time; 0 for an element without text.
    void handleReminderTime(OLMXMLParser& parser);

    // Adds the reminder's minutes, of an element in seconds. The division is unsigned: a negative
    // number gives a huge one, which fills the entry's 8 bytes.
    void handleReminderDelta(OLMXMLParser& parser);

    // Adds whether there is a reminder.
    void handleHasReminder(OLMXMLParser& parser);

    // Adds the location, an empty one too.
    void handleLocation(OLMXMLParser& parser);

    // Adds the sensitivity of a private appointment; nothing for another one.
    void handleSensitivity(OLMXMLParser& parser);

    // Adds the busy status.
    void handleStatus(OLMXMLParser& parser);

    // Adds the mark of an all-day appointment; nothing for another one.
    void handleAllDay(OLMXMLParser& parser);

    // Adds the whole text as the zone's description and reads the offset out of it, as far as it
    // has a sign.
    void handleTimeZone(OLMXMLParser& parser);

    // Writes the organizer as the next recipient, an empty one too; the text is both address and
    // name.
    void addOrganizer(OLMXMLParser& parser);

    // Writes every tag up to the end of the list as a recipient, whatever its name.
    void handleAttendees(OLMXMLParser& parser);

    // Writes the tag's person as the next recipient. Without any attribute too.
    void addNormalAttendee(const OLMXMLTag& tag);

    void parseAndWriteRecur(OLMXMLParser& parser) override;

    int32_t timeZoneOffset = 0; // minutes from universal to local time, daylight saving left out

private:
    void addTwice(unsigned int namedTag, unsigned int tag, const qor::WString& text);
};

#endif
