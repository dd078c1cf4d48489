// The attachments of OLMMsgMailWriter.

#include <algorithm>
#include <cstddef>

#include "filter/boundary/Archive.h"
#include "filter/storage/OLMMsgEmailAttachment.h"
#include "filter/storage/OpenHandle.h"
#include "filter/writers/OLMMsgMailTags.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/xml/TextUnits.h"

namespace {

constexpr int attachByValue = 1;  // the method: the data is in the attachment
constexpr int attachmentKind = 7; // what the object is
constexpr int accessRead = 2;

constexpr std::ptrdiff_t maxNameBytes = sizeof(MemberOpenRequest{}.name);

void addName(OLMMsgEmailAttachment& attachment, const qor::WString& name) {
    const int dot = lastPosition(name, u'.');
    attachment.addProperty(0x3704, name);
    attachment.addProperty(0x3001, name);
    if (dot >= 0) {
        attachment.addProperty(0x3703, qor::WString(name, dot));
    }
}

// Puts the name into the request with a 0 byte behind it. A name that fills its room has that byte
// in the lowest one of the index, on purpose: the request goes out through its bytes.
void setName(MemberOpenRequest& request, const qor::String& name) {
    const char* const begin = name.value();
    const char* const limit = begin + std::min<std::ptrdiff_t>(name.length(), maxNameBytes);
    char* const room = reinterpret_cast<char*>(&request) + offsetof(MemberOpenRequest, name);
    *std::copy(begin, std::find(begin, limit, '\0'), room) = '\0';
}

} // namespace

bool OLMMsgMailWriter::processAttachGrp(OLMXMLParser& parser) {
    OLMXMLTag tag;
    while (parser.nextTag(tag) != 0 && tag.id() != MailAttachments) {
        if (!tag.isClosing()) {
            writeAttachment(tag);
        }
    }
    return true;
}

void OLMMsgMailWriter::writeAttachment(const OLMXMLTag& tag) {
    OLMMsgEmailAttachment attachment(rootStorage, attachmentCount);
    ++attachmentCount;

    const OLMXMLAttribute* url = tag.findAttribute("OPFAttachmentURL");
    if (url == nullptr) {
        return;
    }
    if (OpenHandle entry{openAttachmentNode(url->value.toString())}) {
        attachment.addProperty(0x3701, entry.get());
        entry.reset();
        attachment.addProperty(0x3705, attachByValue);
    }
    // One above the number of its storage: it is the count so far.
    attachment.addProperty(0x0E21, static_cast<int>(attachmentCount));
    if (const OLMXMLAttribute* contentId = tag.findAttribute("OPFAttachmentContentID")) {
        attachment.addProperty(0x3712, contentId->value);
    }
    if (const OLMXMLAttribute* contentType = tag.findAttribute("OPFAttachmentContentType")) {
        attachment.addProperty(0x370E, contentType->value);
    }
    if (const OLMXMLAttribute* name = tag.findAttribute("OPFAttachmentName")) {
        addName(attachment, name->value);
    }
    attachment.addProperty(0x0FFE, attachmentKind);
    attachment.addProperty(0x0FF4, accessRead);
    attachment.addProperty(0x0FF7, 0);
}

HostStream* OLMMsgMailWriter::openAttachmentNode(const qor::String& name) {
    MemberOpenRequest request{};
    request.archive = archiveHandle;
    request.entryIndex = MEMBER_BY_NAME;
    setName(request, name);
    request.always1 = 1;

    // The handle alone tells whether it went well.
    HostStream* handle = nullptr;
    archiveHandle->stream.open(&handle, OpenMember, &request, OpenModeRead);
    return handle;
}
