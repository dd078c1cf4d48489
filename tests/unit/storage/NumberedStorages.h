#ifndef OLMKIT_TESTS_UNIT_STORAGE_NUMBEREDSTORAGES_H
#define OLMKIT_TESTS_UNIT_STORAGE_NUMBEREDSTORAGES_H

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakehost/FakeHost.h"
#include "tests/unit/RowName.h"
#include "tests/unit/storage/PropertyBytes.h"

// What the storages of recipients and attachments have in common: a number in their name.

struct StorageNumber {
    const char* name;
    unsigned int number;
    const char* digits; // the end of the storage's name
};

inline constexpr StorageNumber storageNumbers[] = {
    {"First", 0, "00000000"},
    {"Ten", 10, "0000000A"},
    {"TwoDigits", 255, "000000FF"},
    {"AllDigits", 0x89ABCDEF, "89ABCDEF"},
};

// Makes the storage of a number and expects that its name is `prefix` and the digits, and that its
// property stream is empty.
template <class SubStg>
void expectNameOfNumber(const std::string& prefix, const StorageNumber& row) {
    fakehost::FakeHost host;
    { const SubStg sub(host.newRoot(), row.number); }

    const std::string storage = prefix + row.digits;
    const std::string properties = storage + "/__properties_version1.0";
    EXPECT_THAT(host.message().paths(), testing::ElementsAre(storage, properties));
    EXPECT_EQ(host.message().stream(properties), fakehost::Bytes(8));
}

// Makes two storages one after the other and expects in each its own property.
template <class SubStg> void expectSeparateStorages(const std::string& prefix) {
    fakehost::FakeHost host;
    HostStream* root = host.newRoot();
    {
        SubStg first(root, 0);
        first.addProperty(0x3000, 1);
    }
    {
        SubStg second(root, 1);
        second.addProperty(0x3000, 2);
    }

    const std::string names[] = {prefix + "00000000", prefix + "00000001"};
    EXPECT_THAT(host.message().names(), testing::ElementsAreArray(names));
    EXPECT_THAT(host.message().subEntries(names[0]), testing::ElementsAre(entry(0x30000003, 1)));
    EXPECT_THAT(host.message().subEntries(names[1]), testing::ElementsAre(entry(0x30000003, 2)));
}

#endif
