#ifndef OLMKIT_FILTER_XML_ADDRESSNAMES_H
#define OLMKIT_FILTER_XML_ADDRESSNAMES_H

#include <string_view>

// The attributes by which a tag tells of a person, in mails, contacts and groups alike.
inline constexpr std::string_view addressAttribute = "OPFContactEmailAddressAddress";
inline constexpr std::string_view nameAttribute = "OPFContactEmailAddressName";
inline constexpr std::string_view typeAttribute = "OPFContactEmailAddressType";

#endif
