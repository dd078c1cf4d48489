#include <array>
#include <limits>
#include <numeric>

#include <gtest/gtest.h>

#include "filter/boundary/Storage.h"
#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {

namespace {

class IOStorageTest : public testing::Test {
protected:
    MemorySink sink;
    CompoundOutput output{sink};
};

// A handle of the host that is not an output.
class OtherHandle : public Handle {
public:
    void end() override {}
};

// A value that the handle variable must keep when a call fails.
HostStream* const untouched = reinterpret_cast<HostStream*>(0x10); // NOLINT: never followed

} // namespace

TEST_F(IOStorageTest, RootNeedsACompoundOutput) {
    OtherHandle other;
    RootStorageSpec record{};
    record.output = &other;
    HostStream* handle = untouched;

    EXPECT_NE(IOCreate(&handle, IORootStorage, &record, IOStorageFlags), 0);
    record.output = nullptr;
    EXPECT_NE(IOCreate(&handle, IORootStorage, &record, IOStorageFlags), 0);
    EXPECT_EQ(handle, untouched);
}

TEST_F(IOStorageTest, OutputHasOneRoot) {
    HostStream* root = createRoot(output);

    EXPECT_EQ(createRoot(output), nullptr);
    close(root);
    EXPECT_EQ(createRoot(output), nullptr);
}

TEST_F(IOStorageTest, OnlyAStorageIsAParent) {
    HostStream* root = createRoot(output);
    HostStream* stream = createStream(root, u"stream");

    EXPECT_EQ(createStream(stream, u"a"), nullptr);
    EXPECT_EQ(createStorage(stream, u"a"), nullptr);
    EXPECT_EQ(createStream(&output, u"a"), nullptr);
    EXPECT_EQ(createStream(nullptr, u"a"), nullptr);
}

TEST_F(IOStorageTest, UnknownTypeFails) {
    HostStream* root = createRoot(output);
    StorageSpec record{};
    record.parent = root;
    record.name[0] = 'a';
    HostStream* handle = untouched;

    for (const std::uint32_t type : {0U, 32U, 36U, 0xFFFFFFFFU}) {
        EXPECT_NE(IOCreate(&handle, type, &record, IOStreamFlags), 0) << type;
    }
    EXPECT_EQ(handle, untouched);
}

TEST_F(IOStorageTest, MissingArgumentsFail) {
    HostStream* handle = untouched;
    StorageSpec record{};

    EXPECT_NE(IOCreate(nullptr, IOStream, &record, IOStreamFlags), 0);
    EXPECT_NE(IOCreate(&handle, IOStream, nullptr, IOStreamFlags), 0);
    EXPECT_EQ(handle, untouched);
}

TEST_F(IOStorageTest, InvalidNamesFail) {
    HostStream* root = createRoot(output);

    for (const std::u16string& name : {std::u16string(), std::u16string(32, u'x'),
                                       std::u16string(300, u'x'), std::u16string(u"a/b")}) {
        EXPECT_EQ(createStream(root, name), nullptr) << name.size();
        EXPECT_EQ(createStorage(root, name), nullptr) << name.size();
    }
    EXPECT_NE(createStream(root, std::u16string(31, u'x')), nullptr);
}

TEST_F(IOStorageTest, ReadingAndSeekingAreRefused) {
    HostStream* root = createRoot(output);
    HostStream* stream = createStream(root, u"stream");
    std::array<std::byte, 4> buffer{};
    std::uint32_t count = 7;

    EXPECT_LT(stream->read(stream, buffer.data(), 4, &count), 0);
    EXPECT_EQ(count, 0U);
    EXPECT_LT(stream->seek(stream, 0, 0), 0);
    EXPECT_LT(root->write(root, buffer.data(), 4, &count), 0);
    EXPECT_EQ(count, 0U);
}

TEST_F(IOStorageTest, ClassIdBelongsToAnOpenRoot) {
    HostStream* root = createRoot(output);
    HostStream* storage = createStorage(root, u"storage");
    HostStream* stream = createStream(root, u"stream");
    const ClassId classId{};

    EXPECT_EQ(IOSetInfo(root, IORootStorage, IOInfoClassId, classId.data()), 0);
    EXPECT_NE(IOSetInfo(storage, IORootStorage, IOInfoClassId, classId.data()), 0);
    EXPECT_NE(IOSetInfo(stream, IORootStorage, IOInfoClassId, classId.data()), 0);
    EXPECT_NE(IOSetInfo(&output, IORootStorage, IOInfoClassId, classId.data()), 0);
    EXPECT_NE(IOSetInfo(root, IOSubStorage, IOInfoClassId, classId.data()), 0);
    EXPECT_NE(IOSetInfo(root, IORootStorage, 2, classId.data()), 0);
    EXPECT_NE(IOSetInfo(root, IORootStorage, IOInfoClassId, nullptr), 0);
    EXPECT_NE(IOSetInfo(nullptr, IORootStorage, IOInfoClassId, classId.data()), 0);
}

TEST_F(IOStorageTest, CopyEndsAtTheZeroUnitAndFillsTheRest) {
    std::array<std::uint16_t, 6> destination{9, 9, 9, 9, 9, 9};
    const std::array<std::uint16_t, 4> source{'a', 'b', 0, 'c'};

    EXPECT_EQ(_UTwstrncpy(destination.data(), source.data(), 5), destination.data());

    EXPECT_EQ(destination, (std::array<std::uint16_t, 6>{'a', 'b', 0, 0, 0, 9}));
}

TEST_F(IOStorageTest, CopyCutsAtTheCount) {
    std::array<std::uint16_t, 130> destination{};
    destination.fill(9);
    std::vector<std::uint16_t> source(200, 'x');
    source.push_back(0);

    _UTwstrncpy(destination.data(), source.data(), 128);

    EXPECT_EQ(std::accumulate(destination.begin(), destination.begin() + 128, 0), 128 * 'x');
    EXPECT_EQ(destination[128], 9) << "nothing after the count is changed";
}

} // namespace olmhost::test
