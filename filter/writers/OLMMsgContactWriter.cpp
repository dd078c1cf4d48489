#include "filter/writers/OLMMsgContactWriter.h"

#include <memory>
#include <string_view>

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/writers/OLMMsgContactTags.h"
#include "filter/xml/AddressNames.h"
#include "filter/xml/WStringUnits.h"

namespace {

constexpr const char* lineEnd = "\r\n";

// A list that owns its strings.
class StringList {
public:
    StringList() = default;
    StringList(const StringList&) = delete;
    StringList& operator=(const StringList&) = delete;
    ~StringList() {
        for (const qor::WString* string : strings) {
            delete string;
        }
    }

    void add(std::unique_ptr<qor::WString> string) {
        strings.add(string.get());
        static_cast<void>(string.release()); // now owned by the list
    }

    [[nodiscard]] const qor::ArrayList<qor::WString*>& all() const { return strings; }

private:
    qor::ArrayList<qor::WString*> strings;
};

} // namespace

OLMMsgContactWriter::OLMMsgContactWriter(SODOSPECIALARC* request)
    : OLMMsgWriter(request), addressParts(contactAddrPartCount) {}

OLMMsgContactWriter::~OLMMsgContactWriter() {
    for (const qor::WString* part : addressParts) {
        delete part;
    }
}

unsigned int OLMMsgContactWriter::initilizeWriter(OLMXMLParser& parser) {
    beginMessage(parser, contactTags, "IPM.Contact");
    addressParts.fill(nullptr);
    return 0;
}

unsigned int OLMMsgContactWriter::finalizeNode(OLMXMLParser& parser) {
    const std::unique_ptr<const qor::WString> business(
        constructWholeAddr(BusinessStreet, BusinessCountry));
    handleNamedStrProp(*business, PidLidWorkAddress);

    const std::unique_ptr<const qor::WString> home(constructWholeAddr(HomeStreet, HomeCountry));
    handleNamedStrProp(*home, PidLidHomeAddress);

    return OLMMsgWriter::finalizeNode(parser);
}

bool OLMMsgContactWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case PidTagStreetAddress:
        handleBusinessAddrPart(tag.id(), BusinessStreet, PidLidWorkAddressStreet, parser);
        return true;
    case PidTagLocality:
        handleBusinessAddrPart(tag.id(), BusinessCity, PidLidWorkAddressCity, parser);
        return true;
    case PidTagStateOrProvince:
        handleBusinessAddrPart(tag.id(), BusinessState, PidLidWorkAddressState, parser);
        return true;
    case PidTagPostalCode:
        handleBusinessAddrPart(tag.id(), BusinessPostalCode, PidLidWorkAddressPostalCode, parser);
        return true;
    case PidTagHomeAddressStreet:
        handleHomeAddrPart(tag.id(), HomeStreet, parser);
        return true;
    case PidTagHomeAddressCity:
        handleHomeAddrPart(tag.id(), HomeCity, parser);
        return true;
    case PidTagHomeAddressStateOrProvince:
        handleHomeAddrPart(tag.id(), HomeState, parser);
        return true;
    case PidTagHomeAddressPostalCode:
        handleHomeAddrPart(tag.id(), HomePostalCode, parser);
        return true;
    case PidLidContactUserField1:
    case PidLidContactUserField2:
    case PidLidContactUserField3:
    case PidLidContactUserField4: {
        const std::unique_ptr<const qor::WString> value(readStringValue(parser));
        handleNamedStrProp(*value, tag.id());
        return true;
    }
    case PidTagChildrensNames:
        handleChildrensNames(parser);
        return true;
    case ContactDefaultIM:
        handleEmailAddress(ContactDefaultIM, PidLidInstantMessagingAddress, parser);
        return true;
    case ContactDefaultEmail:
        handleEmailAddress(ContactDefaultEmail, PidLidEmail1EmailAddress, parser);
        return true;
    case ContactEmailList1:
        handleEmailAddress(ContactEmailList1, PidLidEmail2EmailAddress, parser);
        return true;
    case ContactEmailList2:
        handleEmailAddress(ContactEmailList2, PidLidEmail3EmailAddress, parser);
        return true;
    case ContactCategories:
        handleCategories(parser, ContactCategories);
        return true;
    default:
        return OLMMsgWriter::handlePropSpecial(tag, parser);
    }
}

qor::WString* OLMMsgContactWriter::readStringValue(OLMXMLParser& parser) {
    auto value = std::make_unique<qor::WString>();
    parser.content(*value);
    return value.release();
}

void OLMMsgContactWriter::storeAddrPart(ContactAddrPartIndex index, const qor::WString* value) {
    std::unique_ptr<const qor::WString> part(value);
    const auto slot = static_cast<int>(index);
    delete addressParts.get(slot);
    addressParts.set(slot, part.release());
}

qor::WString* OLMMsgContactWriter::constructWholeAddr(ContactAddrPartIndex first,
                                                      ContactAddrPartIndex last) const {
    auto whole = std::make_unique<qor::WString>();
    for (auto slot = static_cast<int>(first); slot <= static_cast<int>(last); ++slot) {
        const qor::WString* part = addressParts.get(slot);
        if (part != nullptr) {
            whole->append(part->value(), part->length());
            whole->append(lineEnd);
        }
    }
    const int lastLineEnd = lastPosition(*whole, u'\r');
    if (lastLineEnd >= 0) {
        whole->setLength(lastLineEnd);
    }
    return whole.release();
}

void OLMMsgContactWriter::handleDupProps(const qor::WString& value, unsigned int tag,
                                         unsigned int key) {
    createStringProp(tag, value);
    handleNamedStrProp(value, key);
}

void OLMMsgContactWriter::handleDupProps(OLMXMLParser& parser, unsigned int tag, unsigned int key) {
    const std::unique_ptr<const qor::WString> value(readStringValue(parser));
    handleDupProps(*value, tag, key);
}

void OLMMsgContactWriter::handleNamedStrProp(const qor::WString& value, unsigned int key) {
    createNamedStringProp(key, value);
}

void OLMMsgContactWriter::handleNamedStrProp(OLMXMLParser& parser, unsigned int key) {
    const std::unique_ptr<const qor::WString> value(readStringValue(parser));
    handleNamedStrProp(*value, key);
}

void OLMMsgContactWriter::handleBusinessAddrPart(unsigned int tag, ContactAddrPartIndex index,
                                                 unsigned int key, OLMXMLParser& parser) {
    const qor::WString* value = readStringValue(parser);
    storeAddrPart(index, value);
    handleDupProps(*value, tag, key);
}

void OLMMsgContactWriter::handleHomeAddrPart(unsigned int tag, ContactAddrPartIndex index,
                                             OLMXMLParser& parser) {
    const qor::WString* value = readStringValue(parser);
    storeAddrPart(index, value);
    createStringProp(tag, *value);
}

void OLMMsgContactWriter::handleChildrensNames(OLMXMLParser& parser) {
    StringList names;
    OLMXMLTag tag;
    bool more = true;
    do {
        more = parser.nextTag(tag) != 0;
        if (!tag.isClosing()) {
            std::unique_ptr<qor::WString> name(readStringValue(parser));
            if (name->length() != 0) {
                names.add(std::move(name));
            }
        }
    } while (more && tag.id() != PidTagChildrensNames);

    addProperty(PidTagChildrensNames,
                writeStringProp(rootStorage, PidTagChildrensNames, names.all()));
}

void OLMMsgContactWriter::handleEmailAddress(unsigned int code, unsigned int key,
                                             OLMXMLParser& parser) {
    OLMXMLTag tag;
    parser.nextTag(tag);
    if (const OLMXMLAttribute* address = tag.findAttribute(addressAttribute)) {
        createStringProp(namedProps.mapNamedProp(key), address->value);
    }
    // The id of the tag above is not checked on purpose: in a group without a tag that is the
    // closing tag of the group, and everything up to the next tag of the code is skipped.
    while (parser.nextTag(tag) != 0 && tag.id() != code) {
    }
}
