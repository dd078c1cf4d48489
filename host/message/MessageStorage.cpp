#include "host/message/MessageStorage.h"

#include <string_view>

#include "host/compound/FieldReader.h"
#include "host/message/MessageFormat.h"
#include "host/message/PropertyType.h"

namespace olmhost {

namespace {

constexpr std::size_t propertyEntrySize = 16; // bytes (MS-OXMSG 2.4.2)

// The bytes of each length in a list of texts or of binary values (MS-OXMSG 2.1.4).
constexpr std::size_t textLengthSize = 4;
constexpr std::size_t binaryLengthSize = 8;

void appendHex(std::u16string& text, std::uint32_t value) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += digits[(value >> shift) & 0xF];
    }
}

std::u16string streamName(std::uint32_t tag) {
    std::u16string name(valueStreamStart);
    appendHex(name, tag);
    return name;
}

} // namespace

MessageStorage::MessageStorage(const CompoundReader& reader, EntryId storage) : reader(reader) {
    for (const EntryId id : reader.entry(storage).children) {
        children.emplace(reader.entry(id).name, id);
    }
}

std::optional<EntryId> MessageStorage::child(const std::u16string& name) const {
    const auto found = children.find(name);
    return found == children.end() ? std::nullopt : std::optional(found->second);
}

std::vector<EntryId> MessageStorage::parts(std::u16string_view start) const {
    std::vector<EntryId> found;
    for (auto child = children.lower_bound(start);
         child != children.end() && child->first.starts_with(start); ++child) {
        if (reader.entry(child->second).isStorage) {
            found.push_back(child->second);
        }
    }
    return found;
}

std::vector<std::byte> MessageStorage::bytes(const std::u16string& name) const {
    const std::optional<EntryId> stream = child(name);
    return stream.has_value() ? reader.bytes(*stream) : std::vector<std::byte>();
}

std::vector<Property> MessageStorage::properties(std::size_t header,
                                                 const MessageNames& names) const {
    const std::vector<std::byte> stream = bytes(propertyStream);
    std::vector<Property> found;
    FieldReader fields(stream);
    fields.bytes(header);
    while (fields.remaining() >= propertyEntrySize) {
        Property property;
        property.tag = fields.number<std::uint32_t>();
        fields.number<std::uint32_t>(); // flags
        property.field = fields.number<std::uint64_t>();
        property.name = names.nameOf(property.id());
        addValues(property);
        found.push_back(std::move(property));
    }
    return found;
}

void MessageStorage::addValues(Property& property) const {
    const TypeRow* row = findType(property.type());
    const bool isList = (property.type() & multipleValues) != 0;
    if (row == nullptr) {
        property.fault = "its type is unknown";
        return;
    }
    if (row->isInEntry && !isList) {
        return;
    }
    if (row->type == PtypObject) {
        property.fault = "it is an object";
        return;
    }
    const std::optional<EntryId> stream = child(streamName(property.tag));
    if (!stream.has_value() || reader.entry(*stream).isStorage) {
        property.fault = "its stream is missing";
        return;
    }
    if (isList && row->size == 0) {
        addListValues(property, *stream);
        return;
    }
    property.values.push_back({*stream, reader.entry(*stream).size});
}

void MessageStorage::addListValues(Property& property, EntryId lengths) const {
    const bool isBinary = property.type() == (PtypBinary | multipleValues);
    const std::size_t count =
        reader.entry(lengths).size / (isBinary ? binaryLengthSize : textLengthSize);
    for (std::size_t i = 0; i < count; ++i) {
        std::u16string name = streamName(property.tag) + u'-';
        appendHex(name, static_cast<std::uint32_t>(i));
        const std::optional<EntryId> stream = child(name);
        if (!stream.has_value() || reader.entry(*stream).isStorage) {
            property.fault = "a stream of its values is missing";
            return;
        }
        property.values.push_back({*stream, reader.entry(*stream).size});
    }
}

} // namespace olmhost
