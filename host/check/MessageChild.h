#ifndef OLMKIT_HOST_CHECK_MESSAGECHILD_H
#define OLMKIT_HOST_CHECK_MESSAGECHILD_H

#include <cstdint>
#include <string_view>

namespace olmhost {

// What a storage or stream of a message is, by its name (MS-OXMSG 2.2 to 2.4).
struct MessageChild {
    enum class Kind {
        PropertyStream, // __properties_version1.0
        NameStorage,    // __nameid_version1.0
        Recipient,      // __recip_version1.0_#00000000
        Attachment,     // __attach_version1.0_#00000000
        Value,          // __substg1.0_0037001F: of a property, by its tag
        ListValue,      // __substg1.0_0037101F-00000000: one of many
        Other,
    };

    Kind kind = Kind::Other;
    std::uint32_t number = 0; // the part's number or the property's tag
    std::uint32_t index = 0;  // of a value in its list
    bool hasLowercaseDigits = false;

    explicit MessageChild(std::u16string_view name);
};

} // namespace olmhost

#endif
