#include "host/session/Module.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/session/BuiltModule.h"

namespace olmhost {
namespace {

using testing::HasSubstr;

TEST(ModuleTest, IsLoadedFromThePathThatIsGiven) {
    std::string failure;

    const auto module = Module::load(builtModule(), failure);

    ASSERT_NE(module, nullptr) << failure;
    EXPECT_NE(module->doSpecial, nullptr);
}

TEST(ModuleTest, LoadedTwiceIsTheSameModule) {
    std::string failure;

    const auto first = Module::load(builtModule(), failure);
    const auto second = Module::load(builtModule(), failure);

    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->streamRead, second->streamRead);
}

TEST(ModuleTest, MissingFileIsNamed) {
    std::string failure;

    EXPECT_EQ(Module::load("/nowhere/olmfilter.so", failure), nullptr);
    EXPECT_THAT(failure, HasSubstr("/nowhere/olmfilter.so"));
}

TEST(ModuleTest, LibraryWithoutTheEntryPointsIsRefused) {
    std::string failure;
    const std::string other = std::string(std::getenv("OLMKIT_BINARY_DIR")) + "/lib/libolmhost.so";

    EXPECT_EQ(Module::load(other, failure), nullptr);
    EXPECT_THAT(failure, HasSubstr("lacks entry points"));
}

TEST(ModuleTest, NameWithoutAFolderIsOnlyLookedUpInTheCurrentFolder) {
    std::string failure;

    EXPECT_EQ(Module::load("libc.so.6", failure), nullptr);
    EXPECT_THAT(failure, HasSubstr("./libc.so.6"));
}

} // namespace
} // namespace olmhost
