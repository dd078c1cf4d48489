#ifndef OLMKIT_FILTER_LISTING_OLMCONTACTGRPFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMCONTACTGRPFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of a contact group: display name and modification date. Its special values are those
// of a contact.
class OLMContactGrpFields : public OLMFieldsNode {
public:
    // Adds the tag table to `parser`. `proc` is a PROC, borrowed. Throws qor::Exception when the
    // reader refuses the table.
    OLMContactGrpFields(OLMXMLParser& parser, void* proc);
};

#endif
