#ifndef OLMKIT_CLI_SHOW_BODYTEXT_H
#define OLMKIT_CLI_SHOW_BODYTEXT_H

#include <string>

#include "host/message/Message.h"

namespace olmkit {

// Returns the text of a message as UTF-8, each line ended by "\n": its plain body, otherwise the
// text of its HTML. A plain body that is HTML source, or equal to the HTML body, is treated as
// HTML. Empty when the message has no text.
std::string bodyText(const olmhost::Message& message);

} // namespace olmkit

#endif
