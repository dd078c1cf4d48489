#ifndef OLMKIT_CLI_SHOW_PROPERTYDESCRIPTION_H
#define OLMKIT_CLI_SHOW_PROPERTYDESCRIPTION_H

#include <string>

#include "cli/rows/JsonLine.h"
#include "host/message/Message.h"

namespace olmkit {

// Returns a property as an object with "tag", "type", "name", "set", "id" and "value". Without a
// value there is also a "fault", the reason.
//
// Strings, numbers and booleans are JSON values of that kind; a time is a string in ISO 8601; a
// binary value is an object with its "size" and "start", its first bytes in hexadecimal, and with
// "one_off" when it is a one-off entry id. Multiple values are an array.
JsonObject describeProperty(const olmhost::Message& message, const olmhost::Property& property);

// Returns a text as UTF-8.
std::string utf8Of(std::u16string_view text);

} // namespace olmkit

#endif
