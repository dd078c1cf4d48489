#include "filter/writers/OLMMsgMailWriter.h"

#include <algorithm>

#include "filter/storage/MapiPropTag.h"
#include "filter/storage/OpenHandle.h"
#include "filter/writers/OLMMsgMailTags.h"

namespace {

// Bits of PidTagMessageFlags.
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

// The prefix of a reply or forward: two units, whatever they are, and a colon.
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

// The scale of the element is 1 to 5. Its two ends count as normal.
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
    addProperty(PidTagMessageFlags, messageFlags);
    return OLMMsgWriter::finalizeNode(parser);
}

unsigned int OLMMsgMailWriter::writeMessageHeader(void* stream) {
    return writeHeaderNumbers(stream, attachmentCount);
}

bool OLMMsgMailWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case PidTagSubject:
        handleSubject(parser);
        return true;
    case PidTagPriority:
        handlePriority(parser);
        return true;
    case PidTagHtml:
        handleHTMLBody(parser);
        return true;
    case PidTagLastModificationTime:
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
        // A mail has one sender: the first tag in the group, even when that is its closing tag.
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
    createStringProp(PidTagSubject, text);
    if (hasPrefix(text)) {
        createStringProp(PidTagSubjectPrefix, qor::WString(text, prefixUnits));
        removePrefix(text); // the space after the colon stays
    } else {
        createEmptyStringProp(PidTagSubjectPrefix);
    }
    createStringProp(PidTagNormalizedSubject, text);
}

void OLMMsgMailWriter::handleHTMLBody(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    const OpenHandle stream(createSubStreamFromProp(rootStorage, PidTagHtml));
    if (stream == nullptr) {
        return;
    }
    writeWordProp(stream.get(), byteOrderMark);
    const uint64_t size = uint64_t{writeStringProp(stream.get(), text)} + sizeof byteOrderMark;
    addProperty(PidTagHtml, size);
}

void OLMMsgMailWriter::handleModTime(OLMXMLParser& parser) {
    const uint64_t time = convertDateProp(parser);
    addProperty(PidTagLastModificationTime, time);
    addProperty(PidTagCreationTime, time); // no element contains the creation time
}

void OLMMsgMailWriter::handleFlagTag(unsigned int code, OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    const bool isSet = text.toBoolean(0, nullptr);

    // The element means "was sent", the flag "unsent".
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
    addProperty(PidTagImportance, importanceOf(text.toLong(0, nullptr, 10)));
}
