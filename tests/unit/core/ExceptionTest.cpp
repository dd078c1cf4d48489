#include "filter/core/Exception.h"

#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

TEST(ExceptionTest, KeepsWhatItWasGiven) {
    qor::Exception cause(15, nullptr, nullptr, nullptr, 0);

    const qor::Exception thrown(137, "out of range", &cause, "List.cpp", 12);

    EXPECT_EQ(thrown.code, 137U);
    EXPECT_STREQ(thrown.message(), "out of range");
    EXPECT_EQ(thrown.cause(), &cause);
    EXPECT_STREQ(thrown.file(), "List.cpp");
    EXPECT_EQ(thrown.line(), 12U);
}

TEST(ExceptionTest, OnlyACodeIsRequired) {
    const qor::Exception thrown(15, nullptr, nullptr, nullptr, 0);

    EXPECT_EQ(thrown.code, 15U);
    EXPECT_EQ(thrown.message(), nullptr);
    EXPECT_EQ(thrown.cause(), nullptr);
    EXPECT_EQ(thrown.file(), nullptr);
    EXPECT_EQ(thrown.line(), 0U);
}

TEST(ExceptionTest, NegativeCodeWrapsAround) {
    EXPECT_EQ(qor::Exception(static_cast<unsigned int>(-15), nullptr, nullptr, nullptr, 0).code,
              0xFFFFFFF1U);
}

TEST(ExceptionTest, MessageIsCopied) {
    std::string message = "first";
    const qor::Exception thrown(1, message.c_str(), nullptr, nullptr, 0);

    message = "other";

    EXPECT_STREQ(thrown.message(), "first");
}

TEST(ExceptionTest, CopyKeepsTheMessageAfterTheOriginalIsGone) {
    auto original = std::make_unique<qor::Exception>(2, "kept", nullptr, nullptr, 0);
    const qor::Exception copy(*original);

    original.reset();

    EXPECT_EQ(copy.code, 2U);
    EXPECT_STREQ(copy.message(), "kept");
}

TEST(ExceptionTest, CopyCannotFail) {
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<qor::Exception>);
}

TEST(ExceptionTest, CanBeCaughtAsThrowable) {
    try {
        qor::throwIndexError("a bound");
    } catch (const qor::Throwable& thrown) {
        EXPECT_STREQ(thrown.message(), "a bound");
        EXPECT_EQ(dynamic_cast<const qor::Exception&>(thrown).code, 137U);
        return;
    }
    FAIL() << "nothing of that type was thrown";
}
