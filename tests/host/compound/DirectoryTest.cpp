#include "host/compound/Directory.h"

#include <gtest/gtest.h>

namespace olmhost {

namespace {

class DirectoryTest : public testing::Test {
protected:
    std::optional<EntryReference> make(EntryReference parent, std::u16string_view name,
                                       EntryType type = EntryType::Stream) {
        return directory.make(parent, type, name, dropped);
    }

    Directory directory;
    std::vector<StreamPlace> dropped;
};

} // namespace

TEST_F(DirectoryTest, NameThatDiffersOnlyInCaseIsReplaced) {
    const auto first = make(Directory::root(), u"Name");
    directory.place(*first, {17, 5000});

    const auto second = make(Directory::root(), u"nAME");

    ASSERT_TRUE(second);
    EXPECT_FALSE(directory.isCurrent(*first));
    EXPECT_TRUE(directory.isCurrent(*second));
    ASSERT_EQ(dropped.size(), 1U);
    EXPECT_EQ(dropped[0].firstSector, 17U);
    EXPECT_EQ(dropped[0].size, 5000U);
}

TEST_F(DirectoryTest, SameNameInAnotherStorageStays) {
    const auto storage = make(Directory::root(), u"storage", EntryType::Storage);
    const auto outer = make(Directory::root(), u"name");
    const auto inner = make(*storage, u"name");

    EXPECT_TRUE(directory.isCurrent(*outer));
    EXPECT_TRUE(directory.isCurrent(*inner));
    EXPECT_NE(outer->id, inner->id);
}

TEST_F(DirectoryTest, StorageIsReplacedWithItsContents) {
    const auto storage = make(Directory::root(), u"storage", EntryType::Storage);
    const auto inner = make(*storage, u"inner", EntryType::Storage);
    const auto shallow = make(*storage, u"shallow");
    const auto deep = make(*inner, u"deep");
    directory.place(*shallow, {1, 10});
    directory.place(*deep, {2, 20});

    const auto replacement = make(Directory::root(), u"STORAGE");

    EXPECT_TRUE(directory.isCurrent(*replacement));
    for (const auto& gone : {storage, inner, shallow, deep}) {
        EXPECT_FALSE(directory.isCurrent(*gone));
    }
    std::uint32_t droppedBytes = 0;
    for (const StreamPlace& place : dropped) {
        droppedBytes += place.size;
    }
    EXPECT_EQ(dropped.size(), 2U);
    EXPECT_EQ(droppedBytes, 30U);
    EXPECT_FALSE(make(*inner, u"late")) << "its storage is gone";
}

TEST_F(DirectoryTest, ReplacedEntriesAreReused) {
    const auto storage = make(Directory::root(), u"storage", EntryType::Storage);
    const auto inner = make(*storage, u"inner");
    make(Directory::root(), u"storage", EntryType::Storage);

    const auto later = make(Directory::root(), u"later");

    EXPECT_EQ(later->id, inner->id);
    EXPECT_TRUE(directory.isCurrent(*later));
    EXPECT_FALSE(directory.isCurrent(*inner));
}

TEST_F(DirectoryTest, RepeatedNameTakesOneEntryHoweverOften) {
    std::optional<EntryReference> last;
    for (int i = 0; i < 1000; ++i) {
        last = make(Directory::root(), u"again");
    }

    EXPECT_EQ(last->id, 1U);
    EXPECT_EQ(make(Directory::root(), u"other")->id, 2U);
}

} // namespace olmhost
