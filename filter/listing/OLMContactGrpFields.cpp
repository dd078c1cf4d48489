#include "filter/listing/OLMContactGrpFields.h"

#include "filter/listing/OLMContactGrpFieldsTags.h"

OLMContactGrpFields::OLMContactGrpFields(OLMXMLParser& parser, void* proc) : OLMFieldsNode(proc) {
    specialValue6 = 0x40000;
    itemName = &textOf(FieldSubject);
    addTagTable(parser, contactGrpFieldsTags);
    specialValue7 = 5;
}
