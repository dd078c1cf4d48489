#include "filter/listing/OLMCalFields.h"

#include "filter/listing/AddressAttributes.h"
#include "filter/listing/OLMCalFieldsTags.h"
#include "filter/xml/OLMXMLTag.h"

OLMCalFields::OLMCalFields(OLMXMLParser& parser, void* proc) : OLMFieldsNode(proc) {
    specialValue6 = 0x50000;
    itemName = &textOf(FieldSubject);
    addTagTable(parser, calFieldsTags);
    specialValue7 = 6;
}

void OLMCalFields::handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) {
    OLMFieldsNode::handleTag(tag, parser);
    if (tag.id() == FieldOrganizer) {
        sender.setAddress(textOf(FieldOrganizer).value());
    }
}

void OLMCalFields::attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) {
    takeAddress(tag, "OPFCalendarAttendeeAddress", "OPFCalendarAttendeeName", address);
}
