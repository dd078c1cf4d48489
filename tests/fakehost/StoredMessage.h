#ifndef OLMKIT_TESTS_FAKEHOST_STOREDMESSAGE_H
#define OLMKIT_TESTS_FAKEHOST_STOREDMESSAGE_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "tests/fakehost/Bytes.h"

namespace fakehost {

// One entry of a property stream.
struct PropertyEntry {
    uint32_t tag = 0;
    uint32_t flags = 0;
    uint64_t value = 0;

    bool operator==(const PropertyEntry&) const = default;
    friend void PrintTo(const PropertyEntry& entry, std::ostream* out);
};

// What was written below one root storage. A value: later writes do not change it.
class StoredMessage {
public:
    struct Node {
        std::string path; // names joined by "/"; the root itself has no node
        bool isStorage = false;
        Bytes bytes;
    };

    // Returns the paths of storages and streams in the order in which they were made; a name that
    // was made again keeps its first place.
    [[nodiscard]] std::vector<std::string> paths() const;
    // Returns the names in one storage, without what is below them.
    [[nodiscard]] std::vector<std::string> names(const std::string& storage = "") const;
    [[nodiscard]] bool has(const std::string& path) const;
    // Returns a stream's bytes. A missing stream fails the test, which prints the message.
    [[nodiscard]] Bytes stream(const std::string& path) const;
    // Returns the entries of a property stream (MS-OXMSG 2.4) after a header of `headerSize` bytes:
    // 32 for the message, 8 for a sub-storage. An incomplete entry at the end fails the test.
    [[nodiscard]] std::vector<PropertyEntry>
    entries(const std::string& path = "__properties_version1.0", size_t headerSize = 32) const;
    // Returns the entries of a recipient's or attachment's storage.
    [[nodiscard]] std::vector<PropertyEntry> subEntries(const std::string& storage) const;

    [[nodiscard]] const Bytes& classId() const { return rootClassId; } // empty when never set
    [[nodiscard]] bool hasRoot() const { return rootMade; }            // a root storage was made
    [[nodiscard]] bool isRootClosed() const { return rootClosed; } // by the module, not by the host

    friend void PrintTo(const StoredMessage& message, std::ostream* out);

private:
    friend class MessageStore;

    std::vector<Node> nodes;
    Bytes rootClassId;
    bool rootMade = false;
    bool rootClosed = false;
};

} // namespace fakehost

#endif
