#ifndef OLMKIT_FILTER_LISTING_OLMCONTACTFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMCONTACTFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of a contact: business title, display name and modification date.
class OLMContactFields : public OLMFieldsNode {
public:
    // Adds the tag table to `parser`. `proc` is a PROC, borrowed. Throws qor::Exception when the
    // reader refuses the table.
    OLMContactFields(OLMXMLParser& parser, void* proc);
};

#endif
