#ifndef OLMKIT_HOST_MESSAGE_MESSAGEFORMAT_H
#define OLMKIT_HOST_MESSAGE_MESSAGEFORMAT_H

#include <string_view>

// The names of storages and streams in a message file (MS-OXMSG).
namespace olmhost {

// The properties of a message, a recipient or an attachment (2.4).
inline constexpr const char16_t* propertyStream = u"__properties_version1.0";

// One value, followed by the eight hexadecimal digits of its tag (2.1.3).
inline constexpr std::u16string_view valueStreamStart = u"__substg1.0_";

// A recipient (2.2.1) and an attachment (2.2.2), followed by the eight digits of a number.
inline constexpr std::u16string_view recipientStart = u"__recip_version1.0_#";
inline constexpr std::u16string_view attachmentStart = u"__attach_version1.0_#";

// The named properties: GUIDs, entries and strings (2.2.3).
inline constexpr const char16_t* namesStorage = u"__nameid_version1.0";
inline constexpr const char16_t* guidStream = u"__substg1.0_00020102";
inline constexpr const char16_t* entryStream = u"__substg1.0_00030102";
inline constexpr const char16_t* stringStream = u"__substg1.0_00040102";

} // namespace olmhost

#endif
