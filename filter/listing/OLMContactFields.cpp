#include "filter/listing/OLMContactFields.h"

#include "filter/listing/OLMContactFieldsTags.h"

OLMContactFields::OLMContactFields(OLMXMLParser& parser, void* proc) : OLMFieldsNode(proc) {
    specialValue6 = 0x40000;
    itemName = &textOf(FieldDisplayName);
    addTagTable(parser, contactFieldsTags);
    specialValue7 = 5;
}
