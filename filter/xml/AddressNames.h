#ifndef OLMKIT_FILTER_XML_ADDRESSNAMES_H
#define OLMKIT_FILTER_XML_ADDRESSNAMES_H

#include <string_view>

// The attributes that describe a person, in mails, contacts and groups.
inline constexpr std::string_view addressAttribute = "OPFContactEmailAddressAddress";
inline constexpr std::string_view nameAttribute = "OPFContactEmailAddressName";
inline constexpr std::string_view typeAttribute = "OPFContactEmailAddressType";

// The same of an attendee of an appointment.
inline constexpr std::string_view attendeeAddressAttribute = "OPFCalendarAttendeeAddress";
inline constexpr std::string_view attendeeNameAttribute = "OPFCalendarAttendeeName";
inline constexpr std::string_view attendeeTypeAttribute = "OPFCalendarAttendeeType";

#endif
