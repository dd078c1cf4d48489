#ifndef OLMKIT_HOST_MESSAGE_MESSAGE_H
#define OLMKIT_HOST_MESSAGE_MESSAGE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/message/Property.h"
#include "host/stream/Export.h"

namespace olmhost {

class CompoundReader;

// A message file (MS-OXMSG): its properties, recipients and attachments.
//
// Only the descriptions of the values are held; the values are read on request. The bytes may be
// anything.
class OLMHOST_EXPORT Message {
public:
    using Properties = std::vector<Property>; // in the order of their entries

    // `file` is borrowed and must outlive the message. Returns null when it is not a message, with
    // the reason in `failure`: human-readable, part of a sentence.
    static std::unique_ptr<Message> open(std::span<const std::byte> file, std::string& failure);

    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;
    ~Message();

    // The properties of the message, and those of each recipient and attachment.
    const Properties& properties() const { return own; }
    const std::vector<Properties>& recipients() const { return ofRecipients; }
    const std::vector<Properties>& attachments() const { return ofAttachments; }

    // Returns the first property of that tag; null when there is none.
    const Property* find(std::uint32_t tag) const { return find(own, tag); }
    static const Property* find(const Properties& properties, std::uint32_t tag);

    // Returns a text, by the property's type of 8 or 16 bits per character (8 bits are read as
    // Latin-1), without terminators at its end.
    std::u16string text(const Property& property, const ValueStream& value) const;

    // Returns the text of the first property of that tag; empty when there is none.
    std::u16string text(const Properties& properties, std::uint32_t tag) const;

    // Returns at most the first `limit` bytes of a value.
    std::vector<std::byte> bytes(const ValueStream& value, std::size_t limit) const;

    // Passes all bytes of a value to `take`, in pieces of any size.
    void read(const ValueStream& value,
              const std::function<void(std::span<const std::byte>)>& take) const;

    // Returns the values of a property whose values have a fixed size of at most 8 bytes, as those
    // bytes with the low byte first. Empty for other properties.
    std::vector<std::uint64_t> numbers(const Property& property) const;

private:
    Message();

    std::unique_ptr<CompoundReader> reader;
    Properties own;
    std::vector<Properties> ofRecipients;
    std::vector<Properties> ofAttachments;
};

} // namespace olmhost

#endif
