#include "host/session/Session.h"

// Opens the archive at `path`. Returns the number of its items; -1 when it doesn't open.
extern "C" long countItems(const char* path) {
    olmhost::Session session;
    if (session.open(path).status != olmhost::OpenStatus::Done) {
        return -1;
    }
    while (!session.list([](const olmhost::Row&) { return olmhost::RowAnswer::Continue; })) {
    }
    return static_cast<long>(session.itemCount());
}
