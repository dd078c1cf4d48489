// The attachments of OLMMsgMailWriter.

#include <algorithm>
#include <cstddef>

#include "filter/boundary/Archive.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/storage/MapiValues.h"
#include "filter/storage/OLMMsgEmailAttachment.h"
#include "filter/storage/OpenHandle.h"
#include "filter/writers/OLMMsgMailTags.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/xml/WStringUnits.h"

namespace {

constexpr int attachByValue = 1;    // PidTagAttachMethod: the data is in the attachment
constexpr int objectAttachment = 7; // PidTagObjectType

constexpr std::ptrdiff_t maxNameBytes = sizeof(MemberOpenRequest{}.name);

void addName(OLMMsgEmailAttachment& attachment, const qor::WString& name) {
    const int dot = lastPosition(name, u'.');
    attachment.addProperty(propertyId(PidTagAttachFilename), name);
    attachment.addProperty(propertyId(PidTagDisplayName), name);
    if (dot >= 0) {
        attachment.addProperty(propertyId(PidTagAttachExtension), qor::WString(name, dot));
    }
}

// Stores the terminated name in the request. The terminator of a name that fills all its room
// overwrites the lowest byte of the index on purpose.
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
        attachment.addProperty(propertyId(PidTagAttachDataBinary), entry.get());
        entry.reset();
        attachment.addProperty(propertyId(PidTagAttachMethod), attachByValue);
    }
    // The count so far, which is one above the number of the storage.
    attachment.addProperty(propertyId(PidTagAttachNumber), static_cast<int>(attachmentCount));
    if (const OLMXMLAttribute* contentId = tag.findAttribute("OPFAttachmentContentID")) {
        attachment.addProperty(propertyId(PidTagAttachContentId), contentId->value);
    }
    if (const OLMXMLAttribute* contentType = tag.findAttribute("OPFAttachmentContentType")) {
        attachment.addProperty(propertyId(PidTagAttachMimeTag), contentType->value);
    }
    if (const OLMXMLAttribute* name = tag.findAttribute("OPFAttachmentName")) {
        addName(attachment, name->value);
    }
    attachment.addProperty(propertyId(PidTagObjectType), objectAttachment);
    attachment.addProperty(propertyId(PidTagAccess), accessRead);
    attachment.addProperty(propertyId(PidTagAccessLevel), 0);
}

HostStream* OLMMsgMailWriter::openAttachmentNode(const qor::String& name) {
    MemberOpenRequest request{};
    request.archive = archiveHandle;
    request.entryIndex = MEMBER_BY_NAME;
    setName(request, name);
    request.always1 = 1;

    // A null handle is the only sign of a failure.
    HostStream* handle = nullptr;
    archiveHandle->stream.open(&handle, OpenMember, &request, OpenModeRead);
    return handle;
}
