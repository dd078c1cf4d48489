#include "filter/listing/OLMFieldsNode.h"

#include <memory>

#include "filter/boundary/Request.h"
#include "filter/core/Exception.h"
#include "filter/listing/OLMColumns.h"
#include "filter/state/PROC.h"
#include "filter/xml/OLMXMLParser.h"
#include "filter/xml/OLMXMLTag.h"

// The numbers in the definitions of the columns have a meaning only to the host.

namespace {

constexpr uint16_t addressSeparator = ';';

// The last step of every column.
void finishColumn(const PROC& proc) {
    proc.call<SoRtnColumnDoneId>(79, 2, 0, 0);
}

bool isAddressEntry(const OLMXMLTag& tag) {
    return tag.id() == FieldAddress && !tag.isClosing();
}

void deleteAddresses(qor::ArrayList<OLMEMailAddr*>& list) {
    for (const OLMEMailAddr* address : list) {
        delete address;
    }
    list.clear();
}

// Replaces each "/" by a 0 unit, at which the host separates the levels.
void separateLevels(qor::WString& path) {
    uint16_t* units = path.buffer();
    bool replaced = false;
    for (int index = 0; index < path.length(); ++index) {
        if (units[index] == u'/') {
            units[index] = 0;
            replaced = true;
        }
    }
    if (replaced) {
        path.resetHash();
    }
}

} // namespace

void OLMDefineTextColumn(unsigned int number, unsigned int second, PROCtag* proc) {
    proc->call<SoRtnColumnTypeId>(25, number, 5);
    proc->call<SoRtnColumnFormatId>(0, second, 0x1000B);
    finishColumn(*proc);
}

void OLMDefineSpecialColumn(unsigned int which, PROCtag* proc) {
    proc->call<SoRtnColumnTypeId>(0, 0xFFFFFFFF, 0);
    proc->call<SoRtnColumnFormatId>(0, which << 26, 1);
    finishColumn(*proc);
}

void OLMDefineArcLocatorColumn(PROCtag* proc) {
    proc->call<SoRtnColumnTypeId>(0, 19, 0);
    proc->call<SoRtnColumnFormatId>(0, 0, 19);
    finishColumn(*proc);
}

OLMFieldsNode::OLMFieldsNode(OLMXMLParser& parser, void* proc, const OLMFieldKind& kind)
    : specialValue6(kind.specialValue6), specialValue7(kind.specialValue7),
      proc(static_cast<PROCtag*>(proc)), itemName(&textOf(kind.nameCode)) {
    const int16_t status =
        parser.addTags(kind.tags.data(), static_cast<unsigned short>(kind.tags.size()));
    if (status < 0) {
        throw qor::Exception(static_cast<unsigned int>(status));
    }
}

OLMFieldsNode::~OLMFieldsNode() {
    deleteAddresses(firstList);
    deleteAddresses(secondList);
}

void OLMFieldsNode::defineOLMFields(void* proc) {
    auto* host = static_cast<PROCtag*>(proc);
    host->call<SoRtnColumnsBeginId>();
    for (const OLMColumn& column : olmColumns) {
        switch (column.kind) {
        case OLMColumnKind::Text:
            OLMDefineTextColumn(column.number, column.second, host);
            break;
        case OLMColumnKind::Special:
            OLMDefineSpecialColumn(column.number, host);
            break;
        case OLMColumnKind::Locator:
            OLMDefineArcLocatorColumn(host);
            break;
        }
    }
    host->call<SoRtnColumnsEndId>();
}

unsigned short OLMFieldsNode::parseNode(OLMXMLParser& parser) {
    folder = parser.folder;
    entryIndex = parser.entryIndex;

    OLMXMLTag tag;
    if (parser.nextTag(tag) == 0 || tag.isClosing() || tag.id() != FieldItem) {
        return 0; // after the last item: the closing tag of the root
    }
    // Any tag of that code ends the item, an opening one too.
    while (parser.nextTag(tag) != 0 && tag.id() != FieldItem) {
        handleTag(tag, parser);
    }
    return 1;
}

void OLMFieldsNode::handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case FieldSender:
        readSingleAddress(parser, FieldSender, sender);
        break;
    case FieldFirstList:
        readEmailAddrList(parser, FieldFirstList, firstList);
        break;
    case FieldSecondList:
        readEmailAddrList(parser, FieldSecondList, secondList);
        break;
    case FieldSubject:
    case FieldSentTime:
    case FieldReceivedTime:
    case FieldModDate:
    case FieldOrganizer:
    case FieldDisplayName:
    case FieldTitle:
        // After a closing tag there is no text, and the field keeps its value.
        parser.content(textOf(tag.id()));
        break;
    default:
        break;
    }
}

void OLMFieldsNode::attributesToAddr(OLMXMLTag& /*tag*/, OLMEMailAddr& /*address*/) {}

unsigned short OLMFieldsNode::readSingleAddress(OLMXMLParser& parser, unsigned int endCode,
                                                OLMEMailAddr& address) {
    OLMXMLTag tag;
    unsigned short found = parser.nextTag(tag);
    if (found != 0 && isAddressEntry(tag)) {
        attributesToAddr(tag, address);
    }
    while (found != 0 && tag.id() != endCode) {
        found = parser.nextTag(tag);
    }
    return found;
}

unsigned short OLMFieldsNode::readEmailAddrList(OLMXMLParser& parser, unsigned int endCode,
                                                qor::ArrayList<OLMEMailAddr*>& list) {
    OLMXMLTag tag;
    while (parser.nextTag(tag) != 0) {
        if (tag.id() == endCode) {
            return 1;
        }
        if (isAddressEntry(tag)) {
            auto address = std::make_unique<OLMEMailAddr>();
            attributesToAddr(tag, *address);
            list.add(address.get());
            static_cast<void>(address.release()); // now owned by the list
        }
    }
    return 0;
}

unsigned short OLMFieldsNode::translateNode(unsigned int itemNumber) {
    putFileName();
    for (const OLMColumn& column : olmColumns) {
        if (column.code != 0) {
            putField(column.code, column.tagId);
        }
    }
    // The values have no beginning of a cell, and the locator has no end of one either.
    proc->call<SoRtnPutValueId>(&specialValue6);
    proc->call<SoRtnCellEndId>(CellEndCode);
    proc->call<SoRtnPutValueId>(&specialValue7);
    proc->call<SoRtnCellEndId>(CellEndCode);

    const ItemLocator locator{sizeof(ItemLocator), static_cast<uint32_t>(entryIndex), itemNumber};
    proc->call<SoRtnPutValueId>(&locator);
    return proc->call<SoRtnBreakId>(BreakRow, 0);
}

void OLMFieldsNode::putFileName() {
    qor::WString path(folder);
    separateLevels(path);
    if (itemName->length() == 0) {
        path.append("NONE");
    } else {
        path.append(itemName->value(), itemName->length());
    }
    path.append(".msg");

    proc->call<SoRtnCellBeginId>();
    putText(path);
    proc->call<SoRtnCellEndId>(CellEndCode);
}

void OLMFieldsNode::putField(unsigned int code, unsigned int tagId) {
    const bool isTagged = fieldLength(code) != 0;
    if (isTagged) {
        startTag(tagId);
    }
    proc->call<SoRtnCellBeginId>();
    putFieldContent(code);
    if (isTagged) {
        endTag();
    }
    proc->call<SoRtnCellEndId>(CellEndCode);
}

int64_t OLMFieldsNode::fieldLength(unsigned int code) const {
    switch (code) {
    case FieldSender:
        return sender.getAddressLen();
    case FieldFirstList:
        return firstList.size();
    case FieldSecondList:
        return secondList.size();
    default:
        return textOf(code).length();
    }
}

void OLMFieldsNode::putFieldContent(unsigned int code) {
    switch (code) {
    case FieldSender:
        sender.outputToChunker(proc);
        break;
    case FieldFirstList:
        addressesOut(firstList);
        break;
    case FieldSecondList:
        addressesOut(secondList);
        break;
    default:
        putText(textOf(code));
        break;
    }
}

// The higher bits of the length are dropped: for a text of 65,536 units the host gets 0.
void OLMFieldsNode::putText(const qor::WString& text) {
    proc->call<SoRtnPutTextId>(text.value(), static_cast<uint16_t>(text.length()), CharsetUtf16);
}

void OLMFieldsNode::addressesOut(const qor::ArrayList<OLMEMailAddr*>& list) {
    for (int index = 0; index < list.size(); ++index) {
        if (index != 0) {
            proc->call<SoRtnPutCharId>(addressSeparator);
        }
        list.get(index)->outputToChunker(proc);
    }
}

void OLMFieldsNode::startTag(unsigned int id) {
    proc->call<SoRtnTagBeginId>(TaggedText, tagIndex, &id);
    proc->call<SoRtnCharsetId>(CharsetUtf16);
}

void OLMFieldsNode::endTag() {
    proc->call<SoRtnTagEndId>(TaggedText, tagIndex);
    ++tagIndex;
}

void OLMFieldsNode::clearFields() {
    deleteAddresses(firstList);
    deleteAddresses(secondList);
    sender.clear();
    for (qor::WString& text : texts) {
        text.setLength(0);
    }
    entryIndex = 0;
}
