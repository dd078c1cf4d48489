#ifndef OLMKIT_CLI_SHOW_BODYTEXT_H
#define OLMKIT_CLI_SHOW_BODYTEXT_H

#include <string>

#include "host/message/Message.h"

namespace olmkit {

// The text of a message, as lines of UTF-8 with "\n" behind each: its plain body, otherwise the
// text of its HTML. A plain body that is HTML source, or the HTML over again, counts as HTML. Empty
// when it has no text.
std::string bodyText(const olmhost::Message& message);

} // namespace olmkit

#endif
