#include "filter/listing/OLMTaskFields.h"

#include "filter/listing/OLMTaskFieldsTags.h"

OLMTaskFields::OLMTaskFields(OLMXMLParser& parser, void* proc) : OLMFieldsNode(proc) {
    specialValue6 = 0x70000;
    itemName = &textOf(FieldSubject);
    addTagTable(parser, taskFieldsTags);
    specialValue7 = 8;
}
