#ifndef OLMKIT_CLI_ROWS_LISTEDSHARE_H
#define OLMKIT_CLI_ROWS_LISTEDSHARE_H

#include <algorithm>
#include <cstdint>

#include "host/session/Session.h"

namespace olmkit {

// How much of an archive has been listed, by the compressed sizes of its entries.
class ListedShare {
public:
    // `session` is borrowed and must be open.
    explicit ListedShare(const olmhost::Session& session) : session(session) {}

    // Records that the listing has reached `entry`; entries come in ascending order.
    void reach(std::uint64_t entry) {
        for (; entriesListed <= entry; ++entriesListed) {
            bytesListed += session.entrySize(entriesListed).packedSize;
        }
    }

    // Returns the share, from 0 to 1.
    double value() const {
        return std::min(1.0, static_cast<double>(bytesListed) /
                                 static_cast<double>(session.archiveSize()));
    }

private:
    const olmhost::Session& session;
    std::uint64_t entriesListed = 0;
    std::uint64_t bytesListed = 0;
};

} // namespace olmkit

#endif
