// The people of OLMMsgCalWriter: organizer and attendees.

#include "filter/storage/OLMMsgRecipient.h"
#include "filter/writers/OLMMsgCalTags.h"
#include "filter/writers/OLMMsgCalWriter.h"
#include "filter/xml/AddressNames.h"

namespace {

constexpr int originalRecipient = 1; // the recipient type of an organizer
constexpr int organizerFlags = 3;

// The attribute's text; an empty one when it is missing.
const qor::WString& textOf(const OLMXMLAttribute* attribute, const qor::WString& empty) {
    return attribute == nullptr ? empty : attribute->value;
}

} // namespace

int mapAttendeeVal(int attendeeType) {
    switch (attendeeType) {
    case 1:
        return 2;
    case 2:
        return 3;
    default:
        return 1;
    }
}

void OLMMsgCalWriter::addOrganizer(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);

    OLMMsgRecipient recipient(rootStorage, static_cast<unsigned int>(recipientCount));
    recipient.addProperty(0x3000, recipientCount);
    recipient.addProperty(0x0C15, originalRecipient);
    recipient.addProperty(0x3003, text);
    recipient.addProperty(0x3001, text);
    recipient.addProperty(0x5FFD, organizerFlags);
    ++recipientCount;
}

// The tag is looked at ahead of the result: where the document breaks off, the record of the tag
// before counts once more, without its attributes.
void OLMMsgCalWriter::handleAttendees(OLMXMLParser& parser) {
    OLMXMLTag tag;
    bool more = true;
    do {
        more = parser.nextTag(tag) != 0;
        if (!tag.isClosing()) {
            addNormalAttendee(tag);
        }
    } while (more && tag.id() != CalAttendees);
}

void OLMMsgCalWriter::addNormalAttendee(const OLMXMLTag& tag) {
    const qor::WString empty;
    const qor::WString& address = textOf(tag.findAttribute("OPFCalendarAttendeeAddress"), empty);
    const qor::WString& type = textOf(tag.findAttribute("OPFCalendarAttendeeType"), empty);
    // The name that a mail's address has goes ahead of the attendee's, also when it is empty.
    const OLMXMLAttribute* mailName = tag.findAttribute(nameAttribute);
    const qor::WString& name = textOf(
        mailName != nullptr ? mailName : tag.findAttribute("OPFCalendarAttendeeName"), empty);

    OLMMsgRecipient recipient(rootStorage, static_cast<unsigned int>(recipientCount));
    recipient.addProperty(0x3000, recipientCount);
    recipient.addProperty(0x0C15, mapAttendeeVal(static_cast<int>(type.toLong(0, nullptr, 10))));
    if (address.length() != 0) {
        recipient.addProperty(0x3003, address);
    }
    const qor::WString& shown = name.length() != 0 ? name : address;
    if (shown.length() != 0) {
        recipient.addProperty(0x3001, shown);
    }
    ++recipientCount;
}
