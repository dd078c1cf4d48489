#include "cli/show/ItemDescription.h"

#include <string_view>

#include "cli/files/Sha256.h"
#include "cli/show/PropertyDescription.h"
#include "cli/show/RecurrenceDescription.h"

namespace olmkit {

namespace {

using olmhost::Message;
using olmhost::Property;

enum Tag : std::uint32_t {
    MessageClass = 0x001A001F,
    RecipientType = 0x0C150003,
    DisplayName = 0x3001001F,
    EmailAddress = 0x3003001F,
    AttachData = 0x37010102,
    AttachFilename = 0x3704001F,
    AttachMimeTag = 0x370E001F,
    AttachContentId = 0x3712001F,
};

JsonObject describeAll(const Message& message, const Message::Properties& properties) {
    JsonObject all = JsonObject::array();
    for (const Property& property : properties) {
        all.push_back(describeProperty(message, property));
    }
    return all;
}

// The text of a property, null without one.
JsonObject textOf(const Message& message, const Message::Properties& properties, Tag tag) {
    return Message::find(properties, tag) == nullptr
               ? JsonObject()
               : JsonObject(utf8Of(message.text(properties, tag)));
}

// How a recipient takes part: in a mail, or in a meeting.
JsonObject partOf(const Message& message, const Message::Properties& recipient, bool isMeeting) {
    const Property* type = Message::find(recipient, RecipientType);
    if (type == nullptr) {
        return nullptr;
    }
    switch (message.numbers(*type).front()) {
    case 0:
        return "originator";
    case 1:
        return isMeeting ? "required" : "to";
    case 2:
        return isMeeting ? "optional" : "cc";
    case 3:
        return isMeeting ? "resource" : "bcc";
    default:
        return nullptr;
    }
}

JsonObject describeRecipient(const Message& message, const Message::Properties& recipient,
                             bool isMeeting) {
    JsonObject described;
    described["type"] = partOf(message, recipient, isMeeting);
    described["name"] = textOf(message, recipient, DisplayName);
    described["address"] = textOf(message, recipient, EmailAddress);
    described["properties"] = describeAll(message, recipient);
    return described;
}

JsonObject describeAttachment(const Message& message, const Message::Properties& attachment) {
    JsonObject described;
    described["name"] = textOf(message, attachment, AttachFilename);
    described["mime_type"] = textOf(message, attachment, AttachMimeTag);
    described["content_id"] = textOf(message, attachment, AttachContentId);
    described["size"] = nullptr;
    described["sha256"] = nullptr;
    const Property* data = Message::find(attachment, AttachData);
    if (data != nullptr && !data->values.empty()) {
        Sha256 sha256;
        message.read(data->values.front(),
                     [&](std::span<const std::byte> piece) { sha256.add(piece); });
        described["size"] = data->values.front().size;
        described["sha256"] = sha256.end();
    }
    described["properties"] = describeAll(message, attachment);
    return described;
}

bool isRecurrence(const Property& property) {
    if (!property.name.has_value() || property.name->isText || property.values.size() != 1) {
        return false;
    }
    const char* name = olmhost::namedPropertyName(property.name->set, property.name->id);
    return name != nullptr && (std::string_view(name) == "PidLidAppointmentRecur" ||
                               std::string_view(name) == "PidLidTaskRecurrence");
}

JsonObject recurrenceOf(const Message& message) {
    for (const Property& property : message.properties()) {
        if (!isRecurrence(property)) {
            continue;
        }
        const olmhost::ValueStream& value = property.values.front();
        std::string failure;
        const auto recurrence =
            olmhost::decodeRecurrence(message.bytes(value, value.size), failure);
        return recurrence.has_value() ? describeRecurrence(*recurrence)
                                      : JsonObject{{"fault", failure}};
    }
    return nullptr;
}

} // namespace

JsonObject describeItem(const ItemOrigin& origin, const Message& message) {
    const std::u16string messageClass = message.text(message.properties(), MessageClass);
    const bool isMeeting = messageClass == u"IPM.Appointment";
    JsonObject described;
    described["index"] = origin.index.has_value() ? JsonObject(*origin.index) : JsonObject();
    described["entry"] = origin.entry;
    described["item"] = origin.item;
    described["class"] = utf8Of(messageClass);
    described["properties"] = describeAll(message, message.properties());
    described["recipients"] = JsonObject::array();
    for (const Message::Properties& recipient : message.recipients()) {
        described["recipients"].push_back(describeRecipient(message, recipient, isMeeting));
    }
    described["attachments"] = JsonObject::array();
    for (const Message::Properties& attachment : message.attachments()) {
        described["attachments"].push_back(describeAttachment(message, attachment));
    }
    described["recurrence"] = recurrenceOf(message);
    return described;
}

} // namespace olmkit
