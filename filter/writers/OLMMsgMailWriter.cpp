#include "filter/writers/OLMMsgMailWriter.h"

#include <algorithm>

#include "filter/storage/OpenHandle.h"
#include "filter/writers/OLMMsgMailTags.h"

namespace {

// Bits of the message flags.
enum MessageFlag : uint32_t {
    MessageRead = 0x01,
    MessageUnsent = 0x08,
    MessageHasAttachments = 0x10,
};

enum Importance : uint32_t {
    ImportanceLow = 0,
    ImportanceNormal = 1,
    ImportanceHigh = 2,
};

// A reply mark: two units and a colon, whatever the two are.
constexpr int prefixUnits = 3;

constexpr uint16_t byteOrderMark = 0xFEFF;

bool hasPrefix(const qor::WString& subject) {
    // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): set up to the length
    return subject.length() >= prefixUnits && subject.value()[prefixUnits - 1] == u':';
}

void removePrefix(qor::WString& subject) {
    uint16_t* const units = subject.buffer();
    std::copy(units + prefixUnits, units + subject.length(), units);
    subject.setLength(subject.length() - prefixUnits);
}

// The element's scale runs from 1 to 5; its two ends count as normal.
Importance importanceOf(int64_t priority) {
    switch (priority) {
    case 2:
        return ImportanceHigh;
    case 4:
        return ImportanceLow;
    default:
        return ImportanceNormal;
    }
}

} // namespace

OLMMsgMailWriter::OLMMsgMailWriter(SODOSPECIALARC* request, void* archive)
    : OLMMsgWriter(request), archiveHandle(static_cast<ArchiveDirectory*>(archive)) {}

unsigned int OLMMsgMailWriter::initilizeWriter(OLMXMLParser& parser) {
    beginMessage(parser, mailTags, "IPM.Note");
    return 0;
}

unsigned int OLMMsgMailWriter::finalizeNode(OLMXMLParser& parser) {
    if (attachmentCount != 0) {
        messageFlags |= MessageHasAttachments;
    }
    addProperty(0x0E070003, messageFlags);
    return OLMMsgWriter::finalizeNode(parser);
}

unsigned int OLMMsgMailWriter::writeMessageHeader(void* stream) {
    return writeHeaderNumbers(stream, attachmentCount);
}

bool OLMMsgMailWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case 0x0037001F:
        handleSubject(parser);
        return true;
    case 0x00260003:
        handlePriority(parser);
        return true;
    case 0x10130102:
        handleHTMLBody(parser);
        return true;
    case 0x30080040:
        handleModTime(parser);
        return true;
    case MailCategories:
        handleCategories(parser, MailCategories);
        return true;
    case MailWasSent:
    case MailIsRead:
        handleFlagTag(tag.id(), parser);
        return true;
    case MailAttachments:
        return processAttachGrp(parser);
    case MailTo:
    case MailCc:
    case MailBcc:
        return processAddressGrp(tag, parser);
    case MailFrom: {
        // A mail has one sender: the first tag inside counts, also when it is the closing one.
        OLMXMLTag sender;
        return parser.nextTag(sender) != 0 && writeFromAddr(sender);
    }
    default:
        return OLMMsgWriter::handlePropSpecial(tag, parser);
    }
}

void OLMMsgMailWriter::handleSubject(OLMXMLParser& parser) {
    qor::WString text;
    if (parser.content(text) == 0) {
        return;
    }
    createStringProp(0x0037001F, text);
    if (hasPrefix(text)) {
        createStringProp(0x003D001F, qor::WString(text, prefixUnits));
        removePrefix(text); // and no more: the space behind the colon stays
    } else {
        createEmptyStringProp(0x003D001F);
    }
    createStringProp(0x0E1D001F, text);
}

void OLMMsgMailWriter::handleHTMLBody(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    const OpenHandle stream(createSubStreamFromProp(rootStorage, 0x10130102));
    if (stream == nullptr) {
        return;
    }
    writeWordProp(stream.get(), byteOrderMark);
    const uint64_t size = uint64_t{writeStringProp(stream.get(), text)} + sizeof byteOrderMark;
    addProperty(0x10130102, size);
}

void OLMMsgMailWriter::handleModTime(OLMXMLParser& parser) {
    const uint64_t time = convertDateProp(parser);
    addProperty(0x30080040, time);
    addProperty(0x30070040, time); // no element tells the creation
}

void OLMMsgMailWriter::handleFlagTag(unsigned int code, OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    const bool isSet = text.toBoolean(0, nullptr);

    // The element says "was sent", the flag says "unsent": the sense turns here.
    if (code == MailWasSent && !isSet) {
        messageFlags |= MessageUnsent;
    }
    if (code == MailIsRead && isSet) {
        messageFlags |= MessageRead;
    }
}

void OLMMsgMailWriter::handlePriority(OLMXMLParser& parser) {
    qor::WString text("3");
    parser.content(text);
    addProperty(0x00170003, importanceOf(text.toLong(0, nullptr, 10)));
}
