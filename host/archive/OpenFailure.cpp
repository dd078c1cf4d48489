#include "host/archive/OpenFailure.h"

#include <cerrno>
#include <system_error>

namespace olmhost {

OpenFailure OpenFailure::unreadable(int error) {
    if (error == ENOENT) {
        return {OpenFailureKind::Unreadable, "does not exist"};
    }
    return {OpenFailureKind::Unreadable,
            "can't be read: " + std::generic_category().message(error)};
}

} // namespace olmhost
