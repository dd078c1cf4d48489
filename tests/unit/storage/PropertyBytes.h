#ifndef OLMKIT_TESTS_UNIT_STORAGE_PROPERTYBYTES_H
#define OLMKIT_TESTS_UNIT_STORAGE_PROPERTYBYTES_H

#include <vector>

#include "tests/fakehost/StoredMessage.h"

// Expected parts of a property stream (MS-OXMSG 2.4), as entries and as bytes.

// Returns an entry. Every one has the flags 6: readable and writable.
inline fakehost::PropertyEntry entry(uint32_t tag, uint64_t value) {
    return {tag, 6, value};
}

inline fakehost::Bytes entryBytes(uint32_t tag, uint64_t value) {
    return fakehost::le32(tag) + fakehost::le32(6) + fakehost::le64(value);
}

inline fakehost::Bytes entryBytes(const std::vector<fakehost::PropertyEntry>& entries) {
    fakehost::Bytes bytes;
    for (const fakehost::PropertyEntry& each : entries) {
        bytes = bytes + fakehost::le32(each.tag) + fakehost::le32(each.flags) +
                fakehost::le64(each.value);
    }
    return bytes;
}

// Returns the 32 bytes before a message's entries, with each count in both of its places.
inline fakehost::Bytes headerBytes(uint32_t recipients, uint32_t attachments) {
    const fakehost::Bytes counts = fakehost::le32(recipients) + fakehost::le32(attachments);
    return fakehost::le64(0) + counts + counts + fakehost::le64(0);
}

#endif
