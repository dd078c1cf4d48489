#include "filter/core/Object.h"

#include <string>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

#include "filter/core/ArrayList.h"
#include "filter/core/WString.h"

namespace {

unsigned int hashOf(std::string_view bytes) {
    return qor::Object::hashdata(reinterpret_cast<const unsigned char*>(bytes.data()),
                                 static_cast<unsigned int>(bytes.size()));
}

// static_cast can't convert a pointer to a virtual base back.
template <class Base, class Derived>
concept TurnsBack = requires(Base* base) {
    static_cast<Derived*>(base);
};

class Plain : public qor::Object {};

class Watched : public qor::Object {
public:
    explicit Watched(int& deaths) : deathCount(deaths) {}
    ~Watched() override { ++deathCount; }

private:
    int& deathCount;
};

} // namespace

// The published test values of the function.
TEST(ObjectTest, HashdataIsFnv1aOf32Bits) {
    EXPECT_EQ(hashOf(""), 0x811C9DC5U);
    EXPECT_EQ(hashOf("a"), 0xE40C292CU);
    EXPECT_EQ(hashOf("foobar"), 0xBF9CF968U);
    EXPECT_EQ(qor::Object::hashdata(nullptr, 0), 0x811C9DC5U);
}

TEST(ObjectTest, HashdataTakesBytesAsUnsigned) {
    // (0x811C9DC5 ^ 0xFF) * 0x01000193, calculated by hand.
    EXPECT_EQ(hashOf("\xFF"), static_cast<unsigned int>(0x811C9D3AULL * 0x01000193ULL));
}

TEST(ObjectTest, EqualsAndHashCodeUseIdentity) {
    const Plain object;
    const Plain other;

    EXPECT_TRUE(object.equals(object));
    EXPECT_FALSE(object.equals(other));
    EXPECT_EQ(object.hashCode(), object.hashCode());
    EXPECT_NE(object.hashCode(), other.hashCode());
    EXPECT_GE(object.hashCode(), 0);
}

TEST(ObjectTest, ClassNameIsThatOfTheMostDerivedClass) {
    const qor::WString text;
    const qor::ArrayList<long> list;
    const qor::Object& object = text;

    EXPECT_STREQ(object.className().value(), "qor::WString");
    EXPECT_STREQ(object.className(list).value(), "qor::ArrayList<long>");
}

TEST(ObjectTest, TextIsTheClassNameAndTheHashCode) {
    const qor::ArrayList<long> list;

    EXPECT_EQ(std::string(list.toString().value()),
              "qor::ArrayList<long>@" + std::to_string(list.hashCode()));
}

TEST(ObjectTest, DeletingThroughTheRootReachesTheDerivedDestructor) {
    int deaths = 0;
    const qor::AbstractObject* object = new Watched(deaths);

    delete object;

    EXPECT_EQ(deaths, 1);
}

TEST(ObjectTest, RootIsAVirtualBase) {
    EXPECT_TRUE((std::is_base_of_v<qor::AbstractObject, qor::Object>));
    EXPECT_FALSE((TurnsBack<qor::AbstractObject, qor::Object>));
    EXPECT_TRUE((TurnsBack<qor::Object, qor::WString>));
}
