#include "backends/posix/modules.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "backends/posix/files.h"
#include "platform/os/utf8.h"
#include "tests/unit/backends/posix/support.h"

namespace {

/// The `foundIn` of the library of that name: 1 beside the program, 2 in its library folder, 3 in
/// the folder of the platform's library, 0 nowhere.
int foundIn(const std::wstring& name) {
    posix::PosixModules modules;
    const auto module = modules.load(name);
    if (!module) return 0;
    const auto function = reinterpret_cast<int (*)()>(module->symbol("foundIn"));
    return function == nullptr ? 0 : function();
}

std::string programFolder() {
    return std::filesystem::path(posix::executablePathBytes()).parent_path();
}

TEST(Modules, PlainNameIsFoundBesideTheProgramFirst) {
    EXPECT_EQ(foundIn(L"EVERYWHERE.dll"), 1);
}

TEST(Modules, PlainNameIsFoundInTheLibraryFolder) {
    EXPECT_EQ(foundIn(L"LIBRARY FOLDER.dll"), 2);
}

TEST(Modules, PlainNameIsFoundBesideThePlatformLibrary) {
    EXPECT_EQ(foundIn(L"PLATFORM FOLDER.dll"), 3);
}

TEST(Modules, PlainNameIsFoundWhereTheSystemLooks) {
    posix::PosixModules modules;
    const auto module = modules.load(L"libm.so.6");
    ASSERT_NE(module, nullptr);
    EXPECT_NE(module->symbol("cos"), nullptr);
}

TEST(Modules, FullPathIsTakenAsItIs) {
    const std::string path = programFolder() + "/../LIB-COPY.dll";
    EXPECT_EQ(foundIn(os::toWide(path)), 0);
    std::filesystem::copy_file(programFolder() + "/EVERYWHERE.dll", path,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(foundIn(os::toWide(path)), 1);
    std::filesystem::remove(path);
}

TEST(Modules, MissingOrUselessLibraryIsNull) {
    posix::PosixModules modules;
    EXPECT_EQ(modules.load(L"NO SUCH LIBRARY.dll"), nullptr);
    EXPECT_EQ(modules.load(L""), nullptr);
    EXPECT_EQ(modules.load(std::wstring(L"libm.so.6\0x", 11)), nullptr);
    const std::string broken = programFolder() + "/BROKEN.dll";
    posix_test::writeFile(broken, "this is no library");
    EXPECT_EQ(modules.load(L"BROKEN.dll"), nullptr);
    std::filesystem::remove(broken);
}

TEST(Modules, MissingSymbolIsNull) {
    posix::PosixModules modules;
    const auto module = modules.load(L"EVERYWHERE.dll");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->symbol("noSuchSymbol"), nullptr);
}

TEST(Modules, DestructionReleasesTheLibrary) {
    const std::string path = programFolder() + "/EVERYWHERE.dll";
    posix::PosixModules modules;
    auto module = modules.load(L"EVERYWHERE.dll");
    ASSERT_NE(module, nullptr);
    void* const loaded = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(loaded, nullptr);
    ::dlclose(loaded);
    module.reset();
    EXPECT_EQ(::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

}  // namespace
