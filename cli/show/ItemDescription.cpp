#include "cli/show/ItemDescription.h"

#include <string_view>

#include "cli/files/Sha256.h"
#include "cli/show/PropertyDescription.h"
#include "cli/show/PropertyTags.h"
#include "cli/show/RecurrenceDescription.h"

namespace olmkit {

namespace {

using olmhost::Message;
using olmhost::Property;

// Values of PidTagRecipientType (MS-OXOMSG).
enum RecipientType : std::uint64_t {
    Originator = 0,
    PrimaryRecipient = 1,
    CcRecipient = 2,
    BccRecipient = 3,
};

constexpr std::u16string_view appointmentClass = u"IPM.Appointment";

JsonObject describeAll(const Message& message, const Message::Properties& properties) {
    JsonObject all = JsonObject::array();
    for (const Property& property : properties) {
        all.push_back(describeProperty(message, property));
    }
    return all;
}

// Returns the text of a property, or null without one.
JsonObject textOf(const Message& message, const Message::Properties& properties, PropertyTag tag) {
    return Message::find(properties, tag) == nullptr
               ? JsonObject()
               : JsonObject(utf8Of(message.text(properties, tag)));
}

// Returns the role of a recipient of a mail or a meeting.
JsonObject roleOf(const Message& message, const Message::Properties& recipient, bool isMeeting) {
    const Property* type = Message::find(recipient, PidTagRecipientType);
    if (type == nullptr) {
        return nullptr;
    }
    switch (message.numbers(*type).front()) {
    case Originator:
        return "originator";
    case PrimaryRecipient:
        return isMeeting ? "required" : "to";
    case CcRecipient:
        return isMeeting ? "optional" : "cc";
    case BccRecipient:
        return isMeeting ? "resource" : "bcc";
    default:
        return nullptr;
    }
}

JsonObject describeRecipient(const Message& message, const Message::Properties& recipient,
                             bool isMeeting) {
    JsonObject described;
    described["type"] = roleOf(message, recipient, isMeeting);
    described["name"] = textOf(message, recipient, PidTagDisplayName);
    described["address"] = textOf(message, recipient, PidTagEmailAddress);
    described["properties"] = describeAll(message, recipient);
    return described;
}

JsonObject describeAttachment(const Message& message, const Message::Properties& attachment) {
    JsonObject described;
    described["name"] = textOf(message, attachment, PidTagAttachFilename);
    described["mime_type"] = textOf(message, attachment, PidTagAttachMimeTag);
    described["content_id"] = textOf(message, attachment, PidTagAttachContentId);
    described["size"] = nullptr;
    described["sha256"] = nullptr;
    const Property* data = Message::find(attachment, PidTagAttachDataBinary);
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
    const std::u16string messageClass = message.text(message.properties(), PidTagMessageClass);
    const bool isMeeting = messageClass == appointmentClass;
    JsonObject described;
    described["index"] = orNull(origin.index);
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
