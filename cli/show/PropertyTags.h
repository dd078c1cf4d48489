#ifndef OLMKIT_CLI_SHOW_PROPERTYTAGS_H
#define OLMKIT_CLI_SHOW_PROPERTYTAGS_H

#include <cstdint>

namespace olmkit {

// The properties that `show` looks up (MS-OXPROPS).
// clang-format off
enum PropertyTag : std::uint32_t {
    PidTagMessageClass     = 0x001A001F,
    PidTagRecipientType    = 0x0C150003,
    PidTagBody             = 0x1000001F,
    PidTagHtml             = 0x10130102,
    PidTagDisplayName      = 0x3001001F,
    PidTagEmailAddress     = 0x3003001F,
    PidTagAttachDataBinary = 0x37010102,
    PidTagAttachFilename   = 0x3704001F,
    PidTagAttachMimeTag    = 0x370E001F,
    PidTagAttachContentId  = 0x3712001F,
};
// clang-format on

} // namespace olmkit

#endif
