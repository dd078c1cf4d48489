#ifndef OLMKIT_HOST_MESSAGE_MESSAGESTORAGE_H
#define OLMKIT_HOST_MESSAGE_MESSAGESTORAGE_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/compound/CompoundReader.h"
#include "host/message/MessageNames.h"
#include "host/message/Property.h"

namespace olmhost {

// One storage of a message that holds properties: the message itself, a recipient, an attachment.
class MessageStorage {
public:
    // Bytes before the entries of a property stream (MS-OXMSG 2.4.1).
    static constexpr std::size_t messageHeader = 32;
    static constexpr std::size_t partHeader = 8;

    // `reader` is borrowed.
    MessageStorage(const CompoundReader& reader, EntryId storage);

    // Returns the entry of that name in the storage.
    std::optional<EntryId> child(const std::u16string& name) const;

    // Returns the storages whose names begin with `start`, in the order of the numbers after that.
    std::vector<EntryId> parts(std::u16string_view start) const;

    // Returns the bytes of the stream of that name; empty when there is none.
    std::vector<std::byte> bytes(const std::u16string& name) const;

    // Returns all properties; none when the storage has no property stream.
    std::vector<Property> properties(std::size_t header, const MessageNames& names) const;

private:
    void addValues(Property& property) const;
    void addListValues(Property& property, EntryId lengths) const;

    const CompoundReader& reader;
    std::map<std::u16string, EntryId, std::less<>> children;
};

} // namespace olmhost

#endif
