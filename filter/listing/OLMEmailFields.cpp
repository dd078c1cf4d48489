#include "filter/listing/OLMEmailFields.h"

#include "filter/listing/AddressAttributes.h"
#include "filter/listing/OLMEmailFieldsTags.h"
#include "filter/xml/AddressNames.h"
#include "filter/xml/OLMXMLParser.h"
#include "filter/xml/OLMXMLTag.h"

namespace {

// No row of the tag table gives this code yet; its element would hold 0 or another number.
constexpr unsigned int numberCode = 19;
constexpr unsigned int valueForZero = 11;

} // namespace

OLMEmailFields::OLMEmailFields(OLMXMLParser& parser, void* proc) : OLMFieldsNode(proc) {
    specialValue6 = 0x30000;
    itemName = &textOf(FieldSubject);
    addTagTable(parser, emailFieldsTags);
    specialValue7 = 4;
}

void OLMEmailFields::handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) {
    if (tag.id() != numberCode) {
        OLMFieldsNode::handleTag(tag, parser);
        return;
    }
    qor::WString text;
    if (parser.content(text) != 0 && text.toLong(0, nullptr, 10) == 0) {
        specialValue7 = valueForZero;
    }
}

void OLMEmailFields::attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) {
    takeAddress(tag, addressAttribute, nameAttribute, address);
}
