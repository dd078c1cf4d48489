#include "host/session/Session.h"

// Opens the archive at `path` and gives how many items it has; -1 when it does not open.
extern "C" long countItems(const char* path) {
    olmhost::Session session;
    if (session.open(path).status != olmhost::OpenStatus::Done) {
        return -1;
    }
    while (!session.list([](const olmhost::Row&) { return olmhost::RowAnswer::Continue; })) {
    }
    return static_cast<long>(session.itemCount());
}
