#include "filter/writers/OLMMsgContactGrpWriter.h"

#include <array>
#include <string_view>

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/storage/OpenHandle.h"
#include "filter/writers/OLMMsgContactGrpTags.h"
#include "filter/xml/AddressNames.h"

namespace {

// ProviderUID of a one-off entry identifier: {A41F2B81-A3BE-1910-9D6E-00DD010F5402}.
constexpr std::array<unsigned char, 16> oneOffProvider = {
    0x81, 0x2B, 0x1F, 0xA4, 0xBE, 0xA3, 0x10, 0x19, 0x9D, 0x6E, 0x00, 0xDD, 0x01, 0x0F, 0x54, 0x02};

constexpr uint16_t oneOffVersion = 0;
constexpr uint16_t oneOffFlags = 0x8001; // the texts are UTF-16, and the member gets no rich text

// Bytes of the leading zeros, the version, the flags and the three terminators.
constexpr unsigned int oneOffFixedSize = 4 + 2 + 2 + 3 * 2;

constexpr int64_t distributionList = 3;
constexpr unsigned int bytesPerSize = 8; // of a value, in the stream of sizes

// Stores the text of the attribute. Without the attribute the text keeps its value.
void takeAttribute(qor::WString& text, const OLMXMLTag& tag, std::string_view name) {
    if (const OLMXMLAttribute* attribute = tag.findAttribute(name)) {
        text = attribute->value;
    }
}

int64_t addressTypeOf(const OLMXMLTag& tag) {
    const OLMXMLAttribute* attribute = tag.findAttribute(typeAttribute);
    return attribute == nullptr ? 0 : attribute->value.toLong(0, nullptr, 10);
}

} // namespace

unsigned int OLMMsgContactGrpWriter::initilizeWriter(OLMXMLParser& parser) {
    beginMessage(parser, contactGrpTags, "IPM.DistList");
    return 0;
}

bool OLMMsgContactGrpWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case ContactGrpCategories:
        handleCategories(parser, ContactGrpCategories);
        return true;
    case PidTagSubject:
        handleDistListName(parser);
        return true;
    case ContactGrpMembers:
        handleGroupList(parser);
        return true;
    default:
        return OLMMsgWriter::handlePropSpecial(tag, parser);
    }
}

void OLMMsgContactGrpWriter::handleDistListName(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    leaveOutUnknown([&] {
        createStringProp(PidTagSubject, text);
        createStringProp(namedProps.mapNamedProp(PidLidDistributionListName), text);
    });
}

void OLMMsgContactGrpWriter::handleGroupList(OLMXMLParser& parser) {
    const unsigned int first = namedProps.mapNamedProp(PidLidDistributionListOneOffMembers);
    const unsigned int second = namedProps.mapNamedProp(PidLidDistributionListMembers);
    const EntryIdList lists[] = {{first, createSubStreamFromProp(rootStorage, first)},
                                 {second, createSubStreamFromProp(rootStorage, second)}};
    unsigned int memberCount = 0;

    OLMXMLTag tag;
    bool more = true;
    do {
        more = parser.nextTag(tag) != 0;
        // Every opening tag is a member. Where the document ends inside the list, the record of the
        // last tag, without its attributes, counts once more if it was an opening tag.
        if (!tag.isClosing()) {
            OneOffEntryIdData data;
            takeAttribute(data.address, tag, addressAttribute);
            takeAttribute(data.displayName, tag, nameAttribute);
            data.addressType = addressTypeOf(tag);
            for (const EntryIdList& list : lists) {
                writeMember(list, memberCount, data);
            }
            ++memberCount;
        }
    } while (more && tag.id() != ContactGrpMembers);

    for (const EntryIdList& list : lists) {
        if (list.sizes != nullptr) {
            list.sizes->close(list.sizes);
            addProperty(list.tag, uint64_t{bytesPerSize} * memberCount);
        }
    }
}

void OLMMsgContactGrpWriter::writeMember(const EntryIdList& list, unsigned int index,
                                         const OneOffEntryIdData& data) {
    const OpenHandle value(createSubStreamFromProp(rootStorage, list.tag, index));
    const unsigned int size = writeOneOffEntryId(value.get(), data);
    writeDwordProp(list.sizes, size);
    writeDwordProp(list.sizes, 0);
}

unsigned int OLMMsgContactGrpWriter::writeOneOffEntryId(HostStream* stream,
                                                        const OneOffEntryIdData& data) {
    const qor::WString type(data.addressType == distributionList ? "MAPIPDL" : "SMTP");

    writeDwordProp(stream, 0);
    unsigned int size = writeStringProp(stream, oneOffProvider.data(), oneOffProvider.size());
    writeWordProp(stream, oneOffVersion);
    writeWordProp(stream, oneOffFlags);
    for (const qor::WString* text : {&data.displayName, &type, &data.address}) {
        size += writeStringProp(stream, *text);
        appendNulToStream(stream);
    }
    return size + oneOffFixedSize;
}
