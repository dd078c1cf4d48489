#include "filter/core/Array.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "filter/core/ArrayList.h"
#include "filter/core/WString.h"
#include "tests/unit/core/IndexError.h"
#include "tests/unit/core/IntegerEnds.h"

namespace {

constexpr const char* arrayGetMessage = "Array.get(): requested index is out of range";
constexpr const char* arraySetMessage = "Array.set: requested index is out of range";
constexpr const char* arrayFillMessage = "Array.fill: requested index is out of range";
constexpr const char* arrayCopyMessage =
    "Array.copyFromArray: copy operation would exceed destination array length";

template <class T> std::vector<T> elementsOf(const qor::Array<T>& array) {
    std::vector<T> elements;
    elements.reserve(static_cast<size_t>(array.length()));
    for (int i = 0; i < array.length(); ++i) {
        elements.push_back(array.get(i));
    }
    return elements;
}

} // namespace

TEST(ArrayTest, NewArrayIsFilledWithZero) {
    const qor::Array<long> numbers(1000);
    const qor::Array<const qor::WString*> pointers(3);

    EXPECT_EQ(numbers.length(), 1000);
    EXPECT_EQ(elementsOf(numbers), std::vector<long>(1000, 0));
    EXPECT_EQ(elementsOf(pointers), std::vector<const qor::WString*>(3, nullptr));
}

TEST(ArrayTest, KeepsALengthOfZeroOrLessAndHasNoElements) {
    for (const int length : {0, -1, lowest}) {
        const qor::Array<long> array(length);

        EXPECT_EQ(array.length(), length);
        EXPECT_EQ(indexErrorOf([&] { (void)array.get(0); }), arrayGetMessage);
    }
}

TEST(ArrayTest, GetReturnsWhatSetStored) {
    qor::Array<long> array(3);

    array.set(0, 10);
    array.set(2, -1);

    EXPECT_EQ(elementsOf(array), (std::vector<long>{10, 0, -1}));
}

TEST(ArrayTest, GetOutsideTheLengthFails) {
    const qor::Array<long> array(2);

    for (const int index : {-1, 2, 3, lowest, highest}) {
        EXPECT_EQ(indexErrorOf([&] { (void)array.get(index); }), arrayGetMessage) << index;
    }
}

TEST(ArrayTest, SetOutsideTheLengthFailsAndChangesNothing) {
    qor::Array<long> array(2);

    for (const int index : {-1, 2, 3, lowest, highest}) {
        EXPECT_EQ(indexErrorOf([&] { array.set(index, 7); }), arraySetMessage) << index;
    }

    EXPECT_EQ(elementsOf(array), (std::vector<long>{0, 0}));
}

TEST(ArrayTest, FillStoresOneValueInEverySlot) {
    qor::Array<long> array(4);
    array.set(1, 5);

    array.fill(-3);

    EXPECT_EQ(elementsOf(array), (std::vector<long>{-3, -3, -3, -3}));
}

TEST(ArrayTest, FillOfAnEmptyArrayFails) {
    for (const int length : {0, -1, lowest}) {
        qor::Array<long> array(length);

        EXPECT_EQ(indexErrorOf([&] { array.fill(1); }), arrayFillMessage) << length;
    }
}

TEST(ArrayTest, CopyFromArrayLeavesElementsPastTheSourcesEnd) {
    qor::Array<long> source(2);
    source.set(0, 1);
    source.set(1, 2);
    qor::Array<long> target(4);
    target.fill(9);

    target.copyFromArray(source);

    EXPECT_EQ(elementsOf(target), (std::vector<long>{1, 2, 9, 9}));
    EXPECT_EQ(elementsOf(source), (std::vector<long>{1, 2}));
}

TEST(ArrayTest, CopyFromAnArrayOfTheSameLengthOrFromItselfIsAllowed) {
    qor::Array<long> source(2);
    source.fill(6);
    qor::Array<long> target(2);

    target.copyFromArray(source);
    target.copyFromArray(target);

    EXPECT_EQ(elementsOf(target), (std::vector<long>{6, 6}));
}

TEST(ArrayTest, CopyFromALongerArrayFailsAndChangesNothing) {
    qor::Array<long> source(3);
    source.fill(6);
    qor::Array<long> target(2);

    EXPECT_EQ(indexErrorOf([&] { target.copyFromArray(source); }), arrayCopyMessage);

    EXPECT_EQ(elementsOf(target), (std::vector<long>{0, 0}));
}

TEST(ArrayTest, CopyFromAnEmptyArrayIntoAnEmptyOneCopiesNothing) {
    const qor::Array<long> empty(0);
    const qor::Array<long> negative(-5);
    qor::Array<long> target(0);

    EXPECT_EQ(indexErrorOf([&] { target.copyFromArray(empty); }), "nothing thrown");
    EXPECT_EQ(indexErrorOf([&] { target.copyFromArray(negative); }), "nothing thrown");
}

TEST(ArrayTest, EqualsComparesTheElementsInOrder) {
    qor::Array<long> array(2);
    qor::Array<long> same(2);
    qor::Array<long> turned(2);
    array.set(0, 1);
    same.set(0, 1);
    turned.set(1, 1);

    EXPECT_TRUE(array.equals(array));
    EXPECT_TRUE(array.equals(same));
    EXPECT_FALSE(array.equals(turned));
}

TEST(ArrayTest, EqualsIsFalseForAnotherLength) {
    EXPECT_FALSE(qor::Array<long>(2).equals(qor::Array<long>(3)));
    EXPECT_FALSE(qor::Array<long>(0).equals(qor::Array<long>(-1)));
}

TEST(ArrayTest, EmptyArraysOfTheSameTypeAndLengthAreEqual) {
    EXPECT_TRUE(qor::Array<long>(0).equals(qor::Array<long>(0)));
    EXPECT_TRUE(qor::Array<long>(-2).equals(qor::Array<long>(-2)));
}

TEST(ArrayTest, EqualsIsFalseForAnotherElementTypeEvenWhenBothAreEmpty) {
    EXPECT_FALSE(qor::Array<long*>(0).equals(qor::Array<char*>(0)));
    EXPECT_FALSE(qor::Array<qor::WString*>(0).equals(qor::Array<const qor::WString*>(0)));
}

TEST(ArrayTest, EqualsIsFalseForAnObjectThatIsNotAnArray) {
    EXPECT_FALSE(qor::Array<long>(0).equals(qor::ArrayList<long>()));
    EXPECT_FALSE(qor::Array<long>(0).equals(qor::WString()));
}

TEST(ArrayTest, PointersToEqualTextsAtDifferentPlacesAreNotEqual) {
    qor::WString first("text");
    qor::WString second("text");
    qor::Array<qor::WString*> array(1);
    qor::Array<qor::WString*> same(1);
    qor::Array<qor::WString*> other(1);
    array.set(0, &first);
    same.set(0, &first);
    other.set(0, &second);

    EXPECT_TRUE(array.equals(same));
    EXPECT_FALSE(array.equals(other));
}

TEST(ArrayTest, EqualArraysHaveDifferentHashCodes) {
    const qor::Array<long> array(1);
    const qor::Array<long> same(1);

    EXPECT_TRUE(array.equals(same));
    EXPECT_EQ(array.hashCode(), array.hashCode());
    EXPECT_NE(array.hashCode(), same.hashCode());
}
