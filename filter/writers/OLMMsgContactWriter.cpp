#include "filter/writers/OLMMsgContactWriter.h"

#include <memory>
#include <string_view>

#include "filter/writers/OLMMsgContactTags.h"
#include "filter/xml/AddressNames.h"
#include "filter/xml/TextUnits.h"

namespace {

constexpr unsigned int childrensNames = 0x3A58101F;
constexpr unsigned int wholeBusinessAddress = 0x801B001F;
constexpr unsigned int wholeHomeAddress = 0x801A001F;

constexpr const char* lineEnd = "\r\n";

// Owns what it lists.
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
        static_cast<void>(string.release()); // the list's from here on
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
    handleNamedStrProp(*business, wholeBusinessAddress);

    const std::unique_ptr<const qor::WString> home(constructWholeAddr(HomeStreet, HomeCountry));
    handleNamedStrProp(*home, wholeHomeAddress);

    return OLMMsgWriter::finalizeNode(parser);
}

bool OLMMsgContactWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case 0x3A29001F:
        handleBusinessAddrPart(tag.id(), BusinessStreet, 0x8045001F, parser);
        return true;
    case 0x3A27001F:
        handleBusinessAddrPart(tag.id(), BusinessCity, 0x8046001F, parser);
        return true;
    case 0x3A28001F:
        handleBusinessAddrPart(tag.id(), BusinessState, 0x8047001F, parser);
        return true;
    case 0x3A2A001F:
        handleBusinessAddrPart(tag.id(), BusinessPostalCode, 0x8048001F, parser);
        return true;
    case 0x3A5D001F:
        handleHomeAddrPart(tag.id(), HomeStreet, parser);
        return true;
    case 0x3A59001F:
        handleHomeAddrPart(tag.id(), HomeCity, parser);
        return true;
    case 0x3A5C001F:
        handleHomeAddrPart(tag.id(), HomeState, parser);
        return true;
    case 0x3A5B001F:
        handleHomeAddrPart(tag.id(), HomePostalCode, parser);
        return true;
    case 0x804F001F:
    case 0x8050001F:
    case 0x8051001F:
    case 0x8052001F: {
        const std::unique_ptr<const qor::WString> value(readStringValue(parser));
        handleNamedStrProp(*value, tag.id());
        return true;
    }
    case childrensNames:
        handleChildrensNames(parser);
        return true;
    case ContactDefaultIM:
        handleEmailAddress(ContactDefaultIM, 0x8062001F, parser);
        return true;
    case ContactDefaultEmail:
        handleEmailAddress(ContactDefaultEmail, 0x8083001F, parser);
        return true;
    case ContactEmailList1:
        handleEmailAddress(ContactEmailList1, 0x8093001F, parser);
        return true;
    case ContactEmailList2:
        handleEmailAddress(ContactEmailList2, 0x80A3001F, parser);
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
                                         unsigned int namedId) {
    createStringProp(tag, value);
    handleNamedStrProp(value, namedId);
}

void OLMMsgContactWriter::handleDupProps(OLMXMLParser& parser, unsigned int tag,
                                         unsigned int namedId) {
    const std::unique_ptr<const qor::WString> value(readStringValue(parser));
    handleDupProps(*value, tag, namedId);
}

void OLMMsgContactWriter::handleNamedStrProp(const qor::WString& value, unsigned int namedId) {
    createNamedStringProp(namedId, value);
}

void OLMMsgContactWriter::handleNamedStrProp(OLMXMLParser& parser, unsigned int namedId) {
    const std::unique_ptr<const qor::WString> value(readStringValue(parser));
    handleNamedStrProp(*value, namedId);
}

void OLMMsgContactWriter::handleBusinessAddrPart(unsigned int tag, ContactAddrPartIndex index,
                                                 unsigned int namedId, OLMXMLParser& parser) {
    const qor::WString* value = readStringValue(parser);
    storeAddrPart(index, value);
    handleDupProps(*value, tag, namedId);
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
    } while (more && tag.id() != childrensNames);

    addProperty(childrensNames, writeStringProp(rootStorage, childrensNames, names.all()));
}

void OLMMsgContactWriter::handleEmailAddress(unsigned int code, unsigned int namedId,
                                             OLMXMLParser& parser) {
    OLMXMLTag tag;
    parser.nextTag(tag);
    if (const OLMXMLAttribute* address = tag.findAttribute(addressAttribute)) {
        createStringProp(namedProps.mapNamedProp(namedId), address->value);
    }
    // The tag above is not looked at: a group without a tag inside is passed at its own closing
    // tag, and what follows belongs to it until the code comes again. That is meant.
    while (parser.nextTag(tag) != 0 && tag.id() != code) {
    }
}
