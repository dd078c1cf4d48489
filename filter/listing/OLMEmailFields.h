#ifndef OLMKIT_FILTER_LISTING_OLMEMAILFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMEMAILFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of a mail: sender, both lists, subject, the three times.
class OLMEmailFields : public OLMFieldsNode {
public:
    // Adds the tag table to `parser`. `proc` is a PROC, borrowed. Throws qor::Exception when the
    // reader refuses the table.
    OLMEmailFields(OLMXMLParser& parser, void* proc);

    void handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) override;
    void attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) override;
};

#endif
