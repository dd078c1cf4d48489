#ifndef OLMKIT_FILTER_LISTING_OLMNOTEFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMNOTEFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of a note: title and modification date.
class OLMNoteFields : public OLMFieldsNode {
public:
    // Adds the tag table to `parser`. `proc` is a PROC, borrowed. Throws qor::Exception when the
    // reader refuses the table.
    OLMNoteFields(OLMXMLParser& parser, void* proc);
};

#endif
