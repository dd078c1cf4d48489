#ifndef OLMKIT_FILTER_LISTING_OLMCALFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMCALFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of an appointment: attendees, modification date, organizer and summary. The organizer
// is listed as the sender too.
class OLMCalFields : public OLMFieldsNode {
public:
    // Adds the tag table to `parser`. `proc` is a PROC, borrowed. Throws qor::Exception when the
    // reader refuses the table.
    OLMCalFields(OLMXMLParser& parser, void* proc);

    void handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) override;
    void attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) override;
};

#endif
