#include "filter/listing/OLMKindFields.h"

#include <string_view>

#include "filter/boundary/Routines.h"
#include "filter/listing/OLMKindFieldsTags.h"
#include "filter/xml/AddressNames.h"
#include "filter/xml/OLMXMLParser.h"
#include "filter/xml/OLMXMLTag.h"

namespace {

// clang-format off
//                                  table                 named by          special values
constexpr OLMFieldKind emailKind   = {emailFieldsTags,      FieldSubject,     SpecialKindMail,        4};
constexpr OLMFieldKind calKind     = {calFieldsTags,        FieldSubject,     SpecialKindAppointment, 6};
constexpr OLMFieldKind contactKind = {contactFieldsTags,    FieldDisplayName, SpecialKindContact,     5};
constexpr OLMFieldKind taskKind    = {taskFieldsTags,       FieldSubject,     SpecialKindTask,        8};
constexpr OLMFieldKind noteKind    = {noteFieldsTags,       FieldSubject,     SpecialKindNote,        7};
constexpr OLMFieldKind groupKind   = {contactGrpFieldsTags, FieldSubject,     SpecialKindContact,     5};
// clang-format on

// An element of this code whose number is 0 changes special value 7 of a mail. No row of the tag
// table has the code yet.
constexpr unsigned int numberCode = 19;
constexpr unsigned int specialValueForZero = 11;

// Takes an address and its name from the attributes of these names. An attribute that is present
// and empty empties its text, a missing one leaves it as it was.
void takeAddress(const OLMXMLTag& tag, std::string_view addressName, std::string_view displayName,
                 OLMEMailAddr& address) {
    if (const OLMXMLAttribute* found = tag.findAttribute(addressName)) {
        address.setAddress(found->value.value());
    }
    if (const OLMXMLAttribute* found = tag.findAttribute(displayName)) {
        address.setName(found->value.value());
    }
}

} // namespace

OLMEmailFields::OLMEmailFields(OLMXMLParser& parser, void* proc)
    : OLMFieldsNode(parser, proc, emailKind) {}

void OLMEmailFields::handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) {
    if (tag.id() != numberCode) {
        OLMFieldsNode::handleTag(tag, parser);
        return;
    }
    qor::WString text;
    if (parser.content(text) != 0 && text.toLong(0, nullptr, 10) == 0) {
        specialValue7 = specialValueForZero;
    }
}

void OLMEmailFields::attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) {
    takeAddress(tag, addressAttribute, nameAttribute, address);
}

OLMCalFields::OLMCalFields(OLMXMLParser& parser, void* proc)
    : OLMFieldsNode(parser, proc, calKind) {}

void OLMCalFields::handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) {
    OLMFieldsNode::handleTag(tag, parser);
    if (tag.id() == FieldOrganizer) {
        sender.setAddress(textOf(FieldOrganizer).value());
    }
}

void OLMCalFields::attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) {
    takeAddress(tag, attendeeAddressAttribute, attendeeNameAttribute, address);
}

OLMContactFields::OLMContactFields(OLMXMLParser& parser, void* proc)
    : OLMFieldsNode(parser, proc, contactKind) {}

OLMTaskFields::OLMTaskFields(OLMXMLParser& parser, void* proc)
    : OLMFieldsNode(parser, proc, taskKind) {}

OLMNoteFields::OLMNoteFields(OLMXMLParser& parser, void* proc)
    : OLMFieldsNode(parser, proc, noteKind) {}

OLMContactGrpFields::OLMContactGrpFields(OLMXMLParser& parser, void* proc)
    : OLMFieldsNode(parser, proc, groupKind) {}
