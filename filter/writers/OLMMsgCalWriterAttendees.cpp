// The recipients of OLMMsgCalWriter: organizer and attendees.

#include "filter/storage/MapiPropTag.h"
#include "filter/storage/MapiValues.h"
#include "filter/storage/OLMMsgRecipient.h"
#include "filter/writers/OLMMsgCalTags.h"
#include "filter/writers/OLMMsgCalWriter.h"
#include "filter/xml/AddressNames.h"

namespace {

constexpr int organizerFlags = 3; // recipSendable and recipOrganizer ([MS-OXOCAL])

// Returns the text of the attribute, or `empty` when it is missing.
const qor::WString& textOf(const OLMXMLAttribute* attribute, const qor::WString& empty) {
    return attribute == nullptr ? empty : attribute->value;
}

} // namespace

int mapAttendeeVal(int attendeeType) {
    switch (attendeeType) {
    case 1:
        return RecipientCc;
    case 2:
        return RecipientBcc;
    default:
        return RecipientTo;
    }
}

void OLMMsgCalWriter::addOrganizer(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);

    OLMMsgRecipient recipient(rootStorage, static_cast<unsigned int>(recipientCount));
    recipient.addProperty(propertyId(PidTagRowid), recipientCount);
    recipient.addProperty(propertyId(PidTagRecipientType), static_cast<int>(RecipientTo));
    recipient.addProperty(propertyId(PidTagEmailAddress), text);
    recipient.addProperty(propertyId(PidTagDisplayName), text);
    recipient.addProperty(propertyId(PidTagRecipientFlags), organizerFlags);
    ++recipientCount;
}

// The tag is handled before the result is checked: where the document ends early, the record of the
// previous tag is handled once more, without its attributes.
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
    const qor::WString& address = textOf(tag.findAttribute(attendeeAddressAttribute), empty);
    const qor::WString& type = textOf(tag.findAttribute(attendeeTypeAttribute), empty);
    // The name of a mail address takes precedence over that of an attendee, even when it is empty.
    const OLMXMLAttribute* mailName = tag.findAttribute(nameAttribute);
    const qor::WString& name =
        textOf(mailName != nullptr ? mailName : tag.findAttribute(attendeeNameAttribute), empty);

    OLMMsgRecipient recipient(rootStorage, static_cast<unsigned int>(recipientCount));
    recipient.addProperty(propertyId(PidTagRowid), recipientCount);
    recipient.addProperty(propertyId(PidTagRecipientType),
                          mapAttendeeVal(static_cast<int>(type.toLong(0, nullptr, 10))));
    if (address.length() != 0) {
        recipient.addProperty(propertyId(PidTagEmailAddress), address);
    }
    const qor::WString& shown = name.length() != 0 ? name : address;
    if (shown.length() != 0) {
        recipient.addProperty(propertyId(PidTagDisplayName), shown);
    }
    ++recipientCount;
}
