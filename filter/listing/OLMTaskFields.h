#ifndef OLMKIT_FILTER_LISTING_OLMTASKFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMTASKFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of a task: name and modification date.
class OLMTaskFields : public OLMFieldsNode {
public:
    // Adds the tag table to `parser`. `proc` is a PROC, borrowed. Throws qor::Exception when the
    // reader refuses the table.
    OLMTaskFields(OLMXMLParser& parser, void* proc);
};

#endif
