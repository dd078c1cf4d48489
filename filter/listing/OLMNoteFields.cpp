#include "filter/listing/OLMNoteFields.h"

#include "filter/listing/OLMNoteFieldsTags.h"

OLMNoteFields::OLMNoteFields(OLMXMLParser& parser, void* proc) : OLMFieldsNode(proc) {
    specialValue6 = 0x60000;
    itemName = &textOf(FieldSubject);
    addTagTable(parser, noteFieldsTags);
    specialValue7 = 7;
}
