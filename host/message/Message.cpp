#include "host/message/Message.h"

#include <algorithm>

#include "host/compound/CompoundReader.h"
#include "host/compound/FieldReader.h"
#include "host/message/MessageFormat.h"
#include "host/message/MessageNames.h"
#include "host/message/MessageStorage.h"
#include "host/message/PropertyType.h"

namespace olmhost {

namespace {

MessageNames namesOf(const CompoundReader& reader, const MessageStorage& root) {
    const std::optional<EntryId> storage = root.child(namesStorage);
    if (!storage.has_value()) {
        return {{}, {}, {}};
    }
    const MessageStorage streams(reader, *storage);
    return {streams.bytes(guidStream), streams.bytes(entryStream), streams.bytes(stringStream)};
}

} // namespace

Message::Message() = default;

Message::~Message() = default;

std::unique_ptr<Message> Message::open(std::span<const std::byte> file, std::string& failure) {
    std::unique_ptr<Message> message(new Message);
    message->reader = CompoundReader::open(file, failure);
    if (message->reader == nullptr) {
        return nullptr;
    }
    const CompoundReader& reader = *message->reader;
    const MessageStorage root(reader, rootEntry);
    if (!root.child(propertyStream).has_value()) {
        failure = "it has no property stream, so it is not a message";
        return nullptr;
    }
    const MessageNames names = namesOf(reader, root);
    message->own = root.properties(MessageStorage::messageHeader, names);
    const auto addParts = [&](std::u16string_view start, std::vector<Properties>& parts) {
        for (const EntryId id : root.parts(start)) {
            const MessageStorage part(reader, id);
            parts.push_back(part.properties(MessageStorage::partHeader, names));
        }
    };
    addParts(recipientStart, message->ofRecipients);
    addParts(attachmentStart, message->ofAttachments);
    return message;
}

const Property* Message::find(const Properties& properties, std::uint32_t tag) {
    const auto found = std::ranges::find(properties, tag, &Property::tag);
    return found == properties.end() ? nullptr : &*found;
}

std::u16string Message::text(const Property& property, const ValueStream& value) const {
    const bool isNarrow = (property.type() & ~multipleValues) == PtypString8;
    std::u16string text;
    text.reserve(value.size / (isNarrow ? 1 : 2));
    std::optional<std::byte> low; // of a unit that is split between two pieces
    read(value, [&](std::span<const std::byte> piece) {
        for (const std::byte byte : piece) {
            if (isNarrow) {
                text += static_cast<char16_t>(byte);
            } else if (!low.has_value()) {
                low = byte;
            } else {
                text += static_cast<char16_t>(std::to_integer<unsigned>(*low) |
                                              std::to_integer<unsigned>(byte) << 8);
                low.reset();
            }
        }
    });
    text.erase(text.find_last_not_of(u'\0') + 1);
    return text;
}

std::u16string Message::text(const Properties& properties, std::uint32_t tag) const {
    const Property* property = find(properties, tag);
    return property == nullptr || property->values.empty()
               ? std::u16string()
               : text(*property, property->values.front());
}

std::vector<std::byte> Message::bytes(const ValueStream& value, std::size_t limit) const {
    return reader->bytes(value.place, limit);
}

void Message::read(const ValueStream& value,
                   const std::function<void(std::span<const std::byte>)>& take) const {
    reader->read(value.place, take);
}

std::vector<std::uint64_t> Message::numbers(const Property& property) const {
    const TypeRow* row = findType(property.type());
    if (row == nullptr || row->size == 0 || row->size > sizeof(std::uint64_t)) {
        return {};
    }
    const std::uint64_t mask = ~std::uint64_t{0} >> (8 * (sizeof(std::uint64_t) - row->size));
    if ((property.type() & multipleValues) == 0) {
        return {property.field & mask};
    }
    std::vector<std::uint64_t> found;
    for (const ValueStream& value : property.values) {
        const std::vector<std::byte> stream = reader->bytes(value.place);
        FieldReader fields(stream);
        while (fields.remaining() >= row->size) {
            FieldReader number(fields.bytes(row->size));
            std::uint64_t bits = 0;
            for (std::size_t i = 0; i < row->size; ++i) {
                bits |= std::uint64_t{number.number<std::uint8_t>()} << (8 * i);
            }
            found.push_back(bits);
        }
    }
    return found;
}

} // namespace olmhost
