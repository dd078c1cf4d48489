#include "filter/core/ArrayList.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "filter/core/WString.h"
#include "tests/unit/core/IndexError.h"
#include "tests/unit/core/IntegerEnds.h"

namespace {

constexpr const char* listGetMessage = "ArrayList.get(): invalid parameter";
constexpr const char* listRemoveMessage = "ArrayList.remove(): invalid parameter";
constexpr const char* listInsertMessage = "ArrayList.insert(): invalid parameter";

enum SmallIndex : int { FirstIndex, SecondIndex };

template <class T> std::vector<T> elementsOf(const qor::ArrayList<T>& list) {
    std::vector<T> elements;
    elements.reserve(static_cast<size_t>(list.size()));
    for (int i = 0; i < list.size(); ++i) {
        elements.push_back(list.get(i));
    }
    return elements;
}

void addAll(qor::ArrayList<long>& list, const std::vector<long>& values) {
    for (const long value : values) {
        list.add(value);
    }
}

// Claims more elements than its store has slots.
class OverlongList : public qor::ArrayList<long> {
public:
    OverlongList() { elementCount = 2; }
    void makeStore() { array = new qor::Array<long>(1); }
};

// Returns each size at which a list gets a store, or a new one, with the store's length.
std::vector<std::pair<int, int>> storesWhileGrowing(int lastSize, bool byInsert) {
    qor::ArrayList<long> list;
    std::vector<std::pair<int, int>> stores;
    while (list.size() < lastSize) {
        if (byInsert) {
            list.insert(list.size(), 1);
        } else {
            list.add(1);
        }
        const int length = list.store()->length();
        if (stores.empty() || stores.back().second != length) {
            stores.emplace_back(list.size(), length);
        }
    }
    return stores;
}

const std::vector<std::pair<int, int>> expectedStores = {
    {1, 1},       {2, 4},        {4, 8},         {8, 16},        {16, 32},     {32, 64},
    {64, 128},    {128, 256},    {256, 512},     {512, 1024},    {1024, 2048}, {2048, 4096},
    {4096, 8192}, {8192, 12288}, {12288, 16384}, {16384, 20480},
};

} // namespace

TEST(ArrayListTest, NewListHasNoStoreAndNoElement) {
    const qor::ArrayList<long> list;

    EXPECT_EQ(list.size(), 0);
    EXPECT_EQ(list.store(), nullptr);
}

TEST(ArrayListTest, AddAppends) {
    qor::ArrayList<long> list;

    addAll(list, {3, 1, 2});

    EXPECT_EQ(elementsOf(list), (std::vector<long>{3, 1, 2}));
}

TEST(ArrayListTest, StoreGrowsBeforeItIsFull) {
    EXPECT_EQ(storesWhileGrowing(20000, false), expectedStores);
}

TEST(ArrayListTest, InsertGrowsTheStoreAsAddDoes) {
    EXPECT_EQ(storesWhileGrowing(20000, true), expectedStores);
}

TEST(ArrayListTest, StoreHas8192SlotsAfter4096ElementsAnd12288AtThe8192nd) {
    qor::ArrayList<long> list;
    for (int i = 0; i < 4096; ++i) {
        list.add(i);
    }
    EXPECT_EQ(list.store()->length(), 8192);

    while (list.size() < 8191) {
        list.add(0);
    }
    EXPECT_EQ(list.store()->length(), 8192);

    list.add(0);
    EXPECT_EQ(list.store()->length(), 12288);
}

TEST(ArrayListTest, GrowingKeepsTheElementsAndZeroesTheNewSlots) {
    qor::ArrayList<long> list;
    std::vector<long> expected;
    for (long i = 0; i < 9000; ++i) {
        list.add(i * i);
        expected.push_back(i * i);
    }

    EXPECT_EQ(elementsOf(list), expected);
    for (int i = 9000; i < list.store()->length(); ++i) {
        ASSERT_EQ(list.store()->get(i), 0) << i;
    }
}

TEST(ArrayListTest, GetOnAnEmptyListFailsWithTheListsMessage) {
    const qor::ArrayList<long> list;

    EXPECT_EQ(indexErrorOf([&] { (void)list.get(0); }), listGetMessage);
}

TEST(ArrayListTest, GetOutsideTheSizeFailsEvenIfTheStoreIsLonger) {
    qor::ArrayList<long> list;
    addAll(list, {1, 2});
    ASSERT_EQ(list.store()->length(), 4);

    for (const int index : {-1, 2, 3, 4, lowest, highest}) {
        EXPECT_EQ(indexErrorOf([&] { (void)list.get(index); }), listGetMessage) << index;
    }
}

TEST(ArrayListTest, GetPastTheEndOfATooShortStoreFailsWithTheArraysMessage) {
    OverlongList list;
    list.makeStore();

    EXPECT_EQ(list.get(0), 0);
    EXPECT_EQ(indexErrorOf([&] { (void)list.get(1); }),
              "Array.get(): requested index is out of range");
    EXPECT_EQ(indexErrorOf([&] { (void)list.get(2); }), listGetMessage);
}

TEST(ArrayListTest, RemoveMovesLaterElementsDown) {
    qor::ArrayList<long> list;
    addAll(list, {0, 1, 2, 3, 4});

    list.remove(1);
    EXPECT_EQ(elementsOf(list), (std::vector<long>{0, 2, 3, 4}));

    list.remove(3);
    EXPECT_EQ(elementsOf(list), (std::vector<long>{0, 2, 3}));

    list.remove(0);
    EXPECT_EQ(elementsOf(list), (std::vector<long>{2, 3}));
}

TEST(ArrayListTest, RemoveOfTheLastElementLeavesAnEmptyListWithItsStore) {
    qor::ArrayList<long> list;
    list.add(1);

    list.remove(0);

    EXPECT_EQ(list.size(), 0);
    EXPECT_EQ(list.store()->length(), 1);
}

TEST(ArrayListTest, RemoveOutsideTheSizeFailsAndChangesNothing) {
    qor::ArrayList<long> list;
    EXPECT_EQ(indexErrorOf([&] { list.remove(0); }), listRemoveMessage);
    addAll(list, {1, 2});

    for (const int index : {-1, 2, 3, lowest, highest}) {
        EXPECT_EQ(indexErrorOf([&] { list.remove(index); }), listRemoveMessage) << index;
    }

    EXPECT_EQ(elementsOf(list), (std::vector<long>{1, 2}));
}

TEST(ArrayListTest, InsertMovesTheElementsFromItsIndexUp) {
    qor::ArrayList<long> list;

    list.insert(0, 3);
    list.insert(0, 1);
    list.insert(1, 2);
    list.insert(3, 4);

    EXPECT_EQ(elementsOf(list), (std::vector<long>{1, 2, 3, 4}));
}

TEST(ArrayListTest, InsertBeforeManyElementsKeepsThemAll) {
    qor::ArrayList<long> list;
    std::vector<long> expected;
    for (long i = 0; i < 5000; ++i) {
        list.insert(list.size() / 2, i);
        expected.insert(expected.begin() + static_cast<long>(expected.size()) / 2, i);
    }

    EXPECT_EQ(elementsOf(list), expected);
}

TEST(ArrayListTest, InsertOutsideTheSizeFailsAndChangesNothing) {
    qor::ArrayList<long> list;
    EXPECT_EQ(indexErrorOf([&] { list.insert(1, 7); }), listInsertMessage);
    EXPECT_EQ(list.store(), nullptr);
    addAll(list, {1, 2});

    for (const int index : {-1, 3, lowest, highest}) {
        EXPECT_EQ(indexErrorOf([&] { list.insert(index, 7); }), listInsertMessage) << index;
    }

    EXPECT_EQ(elementsOf(list), (std::vector<long>{1, 2}));
}

TEST(ArrayListTest, ClearKeepsTheStoreForTheNextElements) {
    qor::ArrayList<long> list;
    addAll(list, {1, 2, 3, 4});
    const qor::Array<long>* store = list.store();

    list.clear();

    EXPECT_EQ(list.size(), 0);
    EXPECT_EQ(indexErrorOf([&] { (void)list.get(0); }), listGetMessage);
    list.add(9);
    EXPECT_EQ(elementsOf(list), std::vector<long>{9});
    EXPECT_EQ(list.store(), store);
    EXPECT_EQ(store->length(), 8);
}

TEST(ArrayListTest, ListNeverDeletesWhatItsElementsPointTo) {
    qor::WString text("still there");
    {
        qor::ArrayList<qor::WString*> list;
        list.add(&text);
        list.add(&text);
        list.remove(0);
        list.clear();
        list.add(&text);
    }

    EXPECT_EQ(text, qor::WString("still there"));
}

TEST(ArrayListTest, EqualsHashCodeAndToStringUseIdentity) {
    qor::ArrayList<long> list;
    qor::ArrayList<long> other;

    EXPECT_TRUE(list.equals(list));
    EXPECT_FALSE(list.equals(other));
    EXPECT_EQ(list.hashCode(), list.hashCode());
    EXPECT_NE(list.hashCode(), other.hashCode());
    EXPECT_FALSE(list.toString() == other.toString());
}

TEST(ArrayListTest, HoldsElementsOf32Bits) {
    qor::ArrayList<SmallIndex> list;

    list.add(SecondIndex);
    list.insert(0, FirstIndex);

    EXPECT_EQ(elementsOf(list), (std::vector<SmallIndex>{FirstIndex, SecondIndex}));
}
