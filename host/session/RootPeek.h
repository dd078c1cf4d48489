#ifndef OLMKIT_HOST_SESSION_ROOTPEEK_H
#define OLMKIT_HOST_SESSION_ROOTPEEK_H

#include <string>

#include "host/stream/Limits.h"

namespace olmhost {

// Whether an archive has a document that only an archive of mail, contacts and the like has: an
// entry whose name ends in ".xml" and whose root element is one of those that hold items or
// categories. Reads the heads of such entries until it finds one, through an opening of its own.
bool hasKnownRoot(const std::string& path, const Limits& limits);

} // namespace olmhost

#endif
