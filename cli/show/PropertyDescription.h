#ifndef OLMKIT_CLI_SHOW_PROPERTYDESCRIPTION_H
#define OLMKIT_CLI_SHOW_PROPERTYDESCRIPTION_H

#include <string>

#include "cli/rows/JsonLine.h"
#include "host/message/Message.h"

namespace olmkit {

// A property as an object of "tag", "type", "name", "set", "id" and "value"; without a value also
// "fault", the reason.
//
// A text is itself, a number or a truth value likewise; a time is a text of ISO 8601; a binary
// value is an object of its "size" and the hexadecimal digits of its "start", with "one_off" when
// it names a recipient. A list is an array of these.
JsonObject describeProperty(const olmhost::Message& message, const olmhost::Property& property);

// A text as UTF-8.
std::string utf8Of(std::u16string_view text);

} // namespace olmkit

#endif
