#include <dlfcn.h>

#include <gtest/gtest.h>

#include "tests/host/session/MadeArchive.h"

namespace olmhost {
namespace {

// This program is not linked with the host: the host is loaded by a library with local symbols, as
// a plug-in of another program would.
TEST(LocalHostTest, ModuleFindsTheFunctionsOfAHostThatWasLoadedLocally) {
    const MadeArchive archive{
        {"Notes.xml", "<notes><note><OPFNoteCopyTitle>a</OPFNoteCopyTitle></note></notes>"}};
    void* library = dlopen(SESSION_USER, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto countItems = reinterpret_cast<long (*)(const char*)>(dlsym(library, "countItems"));
    ASSERT_NE(countItems, nullptr);
    ASSERT_EQ(dlsym(RTLD_DEFAULT, "SYSNativeAlloc"), nullptr) << "the host is not local";

    EXPECT_EQ(countItems(archive.path().c_str()), 1);
}

} // namespace
} // namespace olmhost
