// The addresses of OLMMsgMailWriter: the sender and the three groups of recipients.

#include <algorithm>
#include <iterator>
#include <string_view>

#include "filter/storage/MapiPropTag.h"
#include "filter/storage/MapiValues.h"
#include "filter/storage/OLMMsgRecipient.h"
#include "filter/storage/OpenHandle.h"
#include "filter/writers/OLMMsgMailTags.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/xml/AddressNames.h"
#include "filter/xml/WStringUnits.h"

namespace {

struct RecipientGroup {
    MailCode code;
    RecipientType type;
    unsigned int displayTag;
};

// clang-format off
constexpr RecipientGroup recipientGroups[] = {
    {MailTo,  RecipientTo,  PidTagDisplayTo},
    {MailCc,  RecipientCc,  PidTagDisplayCc},
    {MailBcc, RecipientBcc, PidTagDisplayBcc},
};
// clang-format on

// Returns the text of the attribute, or null when it is missing or empty.
const qor::WString* textOf(const OLMXMLTag& tag, std::string_view attributeName) {
    const OLMXMLAttribute* attribute = tag.findAttribute(attributeName);
    return attribute == nullptr || attribute->value.length() == 0 ? nullptr : &attribute->value;
}

} // namespace

bool OLMMsgMailWriter::writeFromAddr(OLMXMLTag& tag) {
    if (const OLMXMLAttribute* address = tag.findAttribute(addressAttribute)) {
        createStringProp(PidTagSentRepresentingEmailAddress, address->value);
    }
    if (const OLMXMLAttribute* name = tag.findAttribute(nameAttribute)) {
        createStringProp(PidTagSentRepresentingName, name->value);
    }
    return true;
}

bool OLMMsgMailWriter::processAddressGrp(const OLMXMLTag& groupTag, OLMXMLParser& parser) {
    const unsigned int code = groupTag.id();
    const auto* group =
        std::ranges::find(recipientGroups, code, [](const auto& row) { return row.code; });
    if (group == std::end(recipientGroups)) {
        return false;
    }

    OLMXMLTag tag;
    while (parser.nextTag(tag) != 0 && tag.id() != code) {
        if (!tag.isClosing()) {
            writeRecipientAddr(group->type, tag);
        }
    }
    // The size counts a second terminator, after the one that was written.
    const uint64_t size = writeRecipientDisplay(group->displayTag, *displayListOf(group->type));
    addProperty(group->displayTag, size + 2);
    return true;
}

bool OLMMsgMailWriter::writeRecipientAddr(unsigned int recipientType, OLMXMLTag& tag) {
    OLMMsgRecipient recipient(rootStorage, static_cast<unsigned int>(recipientCount));
    recipient.addProperty(propertyId(PidTagRowid), recipientCount);
    recipient.addProperty(propertyId(PidTagRecipientType), static_cast<int>(recipientType));

    const qor::WString* address = textOf(tag, addressAttribute);
    if (address != nullptr) {
        recipient.addProperty(propertyId(PidTagEmailAddress), *address);
    }
    const qor::WString* name = textOf(tag, nameAttribute);
    const qor::WString* shown = name != nullptr ? name : address;
    if (shown != nullptr) {
        recipient.addProperty(propertyId(PidTagDisplayName), *shown);
        appendRecipientVal(recipientType, *shown);
    }
    ++recipientCount;
    return true;
}

void OLMMsgMailWriter::appendRecipientVal(unsigned int recipientType, const qor::WString& value) {
    qor::WString* list = displayListOf(recipientType);
    if (list != nullptr) {
        list->append(value.value(), value.length());
        list->append("; ");
    }
}

uint64_t OLMMsgMailWriter::writeRecipientDisplay(unsigned int tag, qor::WString& list) {
    const OpenHandle stream(createSubStreamFromProp(rootStorage, tag));
    if (stream == nullptr) {
        return 0;
    }
    // A later group of the same type continues here, without a separator.
    list.setLength(std::max(lastPosition(list, u';'), 0));
    const uint64_t size = writeStringProp(stream.get(), list);
    appendNulToStream(stream.get());
    return size + 2;
}

// Returns null for a type without a group.
qor::WString* OLMMsgMailWriter::displayListOf(unsigned int recipientType) {
    switch (recipientType) {
    case RecipientTo:
        return &toDisplayList;
    case RecipientCc:
        return &ccDisplayList;
    case RecipientBcc:
        return &bccDisplayList;
    default:
        return nullptr;
    }
}
