#include "backends/posix/key_store.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <thread>

#include "tests/unit/backends/posix/support.h"

namespace {

using os::KeyAccess;
using posix_test::pathExists;
using posix_test::Program;
using posix_test::readFile;
using posix_test::ScopedVariable;
using posix_test::ScratchFolder;
using posix_test::writeFile;

constexpr const wchar_t* kPath = L"Software\\Bextora\\bextora\\Settings\\Compare";

constexpr ::uid_t kNobody = 65534;
constexpr int kCannotChangeUser = 126;

void giveToNobody(const std::string& folder) {
    ASSERT_EQ(::chown(folder.c_str(), kNobody, kNobody), 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        ASSERT_EQ(::chown(entry.path().c_str(), kNobody, kNobody), 0);
    }
}

bool becomeNobody() {
    return ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
}

class KeyStore : public testing::Test {
protected:
    ScratchFolder scratch;
    std::string file = scratch.file("config/bextora/keystore.ini");
    posix::FileKeyStore store{file};
};

TEST_F(KeyStore, MissingKeyCannotBeOpened) {
    for (const KeyAccess access : {KeyAccess::Read, KeyAccess::Write, KeyAccess::Full}) {
        EXPECT_EQ(store.open(kPath, access), nullptr);
    }
    EXPECT_FALSE(pathExists(file));
}

TEST_F(KeyStore, CreatingLeavesAnEmptyKeyBehind) {
    ASSERT_NE(store.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_EQ(readFile(file), "[Software\\Bextora\\bextora\\Settings\\Compare]\n");
    const auto key = posix::FileKeyStore(file).open(kPath, KeyAccess::Read);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->readNumber(L"PSCompare"), std::nullopt);
    EXPECT_EQ(key->readText(L"PSCompare"), std::nullopt);
}

TEST_F(KeyStore, CreatingMakesTheParentsToo) {
    store.create(kPath, KeyAccess::Full);
    EXPECT_NE(store.open(L"Software\\Bextora", KeyAccess::Read), nullptr);
    EXPECT_NE(store.open(L"software", KeyAccess::Read), nullptr);
}

TEST_F(KeyStore, CreatingForReadingCreatesToo) {
    EXPECT_NE(store.create(kPath, KeyAccess::Read), nullptr);
    EXPECT_NE(store.open(kPath, KeyAccess::Read), nullptr);
}

TEST_F(KeyStore, ValuesArriveInTheFileAtOnce) {
    const auto key = store.create(kPath, KeyAccess::Write);
    EXPECT_TRUE(key->writeNumber(L"PSCompare", 4294967295U));
    EXPECT_TRUE(key->writeText(L"StampPath", L"/home/\u00e4/x y.png"));
    const auto other = posix::FileKeyStore(file).open(kPath, KeyAccess::Read);
    EXPECT_EQ(other->readNumber(L"pscompare"), 4294967295U);
    EXPECT_EQ(other->readText(L"STAMPPATH"), L"/home/\u00e4/x y.png");
}

TEST_F(KeyStore, NumberIsNoTextAndTextIsNoNumber) {
    const auto key = store.create(kPath, KeyAccess::Full);
    key->writeNumber(L"number", 1);
    key->writeText(L"text", L"1");
    EXPECT_EQ(key->readText(L"number"), std::nullopt);
    EXPECT_EQ(key->readNumber(L"text"), std::nullopt);
    key->writeText(L"number", L"now a text");
    EXPECT_EQ(key->readNumber(L"number"), std::nullopt);
    EXPECT_EQ(key->readText(L"number"), L"now a text");
}

TEST_F(KeyStore, KeyForReadingRefusesWrites) {
    store.create(kPath, KeyAccess::Full)->writeNumber(L"a", 1);
    const auto key = store.open(kPath, KeyAccess::Read);
    EXPECT_FALSE(key->writeNumber(L"a", 2));
    EXPECT_FALSE(key->writeText(L"a", L"2"));
    EXPECT_EQ(key->readNumber(L"a"), 1U);
}

TEST_F(KeyStore, OpenKeySeesWhatOthersWrite) {
    const auto reader = store.create(kPath, KeyAccess::Read);
    posix::FileKeyStore(file).open(kPath, KeyAccess::Write)->writeNumber(L"a", 5);
    EXPECT_EQ(reader->readNumber(L"a"), 5U);
    writeFile(file, "[Software\\Bextora\\bextora\\Settings\\Compare]\na=6\n");
    EXPECT_EQ(reader->readNumber(L"a"), 6U);
}

TEST_F(KeyStore, KeyOutlivesItsStore) {
    std::unique_ptr<os::Key> key;
    {
        posix::FileKeyStore shortLived(file);
        key = shortLived.create(kPath, KeyAccess::Full);
    }
    EXPECT_TRUE(key->writeNumber(L"a", 1));
    EXPECT_EQ(key->readNumber(L"a"), 1U);
}

TEST_F(KeyStore, WritingTheSameValueLeavesTheFileAlone) {
    const auto key = store.create(kPath, KeyAccess::Full);
    key->writeNumber(L"a", 1);
    struct stat before {};
    struct stat after {};
    ::stat(file.c_str(), &before);
    EXPECT_TRUE(key->writeNumber(L"a", 1));
    ::stat(file.c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(KeyStore, FileAndFolderArePrivateAndAUsersModeIsKept) {
    const auto key = store.create(kPath, KeyAccess::Full);
    struct stat status {};
    ::stat(file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    ::stat(scratch.file("config/bextora").c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0700U);
    ::chmod(file.c_str(), 0640);
    key->writeNumber(L"a", 1);
    ::stat(file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST_F(KeyStore, FileBehindALinkIsChangedThere) {
    std::filesystem::create_directories(scratch.file("config/bextora"));
    writeFile(scratch.file("real.ini"), "[Software]\na=1\n");
    std::filesystem::create_symlink(scratch.file("real.ini"), file);
    EXPECT_TRUE(store.open(L"Software", KeyAccess::Full)->writeNumber(L"a", 2));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(readFile(scratch.file("real.ini")), "[Software]\na=2\n");
}

TEST_F(KeyStore, StoreThatCannotBeWrittenRefusesWritersOnly) {
    writeFile(scratch.file("config"), "a file where the folder should be");
    EXPECT_EQ(store.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_EQ(store.create(kPath, KeyAccess::Read), nullptr);
    EXPECT_EQ(store.open(kPath, KeyAccess::Read), nullptr);
    posix::FileKeyStore nowhere("/proc/bextora/keystore.ini");
    EXPECT_EQ(nowhere.create(kPath, KeyAccess::Full), nullptr);
    posix::FileKeyStore nothing("");
    EXPECT_EQ(nothing.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_EQ(nothing.open(kPath, KeyAccess::Read), nullptr);
}

TEST_F(KeyStore, ReadOnlyFileCanBeReadAndIsNotReplaced) {
    const auto key = store.create(kPath, KeyAccess::Full);
    key->writeNumber(L"a", 1);
    ::chmod(file.c_str(), 0400);
    const auto expectRefusals = [&] {
        EXPECT_FALSE(key->writeNumber(L"a", 2));
        EXPECT_EQ(store.open(kPath, KeyAccess::Full), nullptr);
        EXPECT_EQ(store.create(kPath, KeyAccess::Write), nullptr);
        const auto reader = store.open(kPath, KeyAccess::Read);
        ASSERT_NE(reader, nullptr);
        EXPECT_EQ(reader->readNumber(L"a"), 1U);
    };
    if (::geteuid() != 0) return expectRefusals();
    // Permissions don't stop root; a child of the test becomes somebody whom they stop.
    giveToNobody(scratch.path());
    const auto asNobody = [&] {
        if (!becomeNobody()) ::_exit(kCannotChangeUser);
        expectRefusals();
        ::_exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(asNobody(), testing::ExitedWithCode(0), "");
}

TEST_F(KeyStore, StoreThatCannotBeLockedCanBeRead) {
    std::filesystem::create_directories(file + ".lock");
    writeFile(file, "[Software]\na=1\n");
    EXPECT_EQ(store.open(L"Software", KeyAccess::Full), nullptr);
    EXPECT_EQ(store.open(L"Software", KeyAccess::Write), nullptr);
    EXPECT_EQ(store.create(L"Software", KeyAccess::Full), nullptr);
    EXPECT_EQ(store.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_EQ(store.open(L"Software", KeyAccess::Read)->readNumber(L"a"), 1U);
    EXPECT_EQ(store.create(L"Software", KeyAccess::Read)->readNumber(L"a"), 1U);
    EXPECT_EQ(readFile(file), "[Software]\na=1\n");
}

TEST_F(KeyStore, FileThatCannotBeReadIsNotReplaced) {
    const auto key = store.create(kPath, KeyAccess::Full);
    constexpr std::uintmax_t kTooLarge = std::uintmax_t{65} << 20;
    std::filesystem::resize_file(file, kTooLarge);
    EXPECT_FALSE(key->writeNumber(L"a", 1));
    EXPECT_EQ(key->readNumber(L"a"), std::nullopt);
    EXPECT_EQ(store.open(kPath, KeyAccess::Read), nullptr);
    EXPECT_EQ(store.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_EQ(std::filesystem::file_size(file), kTooLarge);
}

TEST_F(KeyStore, FolderInPlaceOfTheFileIsNeitherReadNorReplaced) {
    std::filesystem::create_directories(file);
    EXPECT_EQ(store.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_EQ(store.open(L"", KeyAccess::Read), nullptr);
    EXPECT_TRUE(std::filesystem::is_directory(file));
}

TEST_F(KeyStore, WriteThatFailsHalfwayKeepsTheOldFile) {
    std::filesystem::create_directories(scratch.file("config/bextora"));
    writeFile(file, "[Software]\nOld=7\n");
    Program program({"write-store-without-room", file});
    EXPECT_EQ(program.readLine(), "refused 7");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(readFile(file), "[Software]\nOld=7\n");
    EXPECT_FALSE(pathExists(file + ".new"));
}

TEST_F(KeyStore, DamagedFileIsReadAsFarAsItGoesAndKeptOtherwise) {
    std::filesystem::create_directories(scratch.file("config/bextora"));
    const std::string damage = "\x01\x02 garbage\n[Software\na=1\n";
    writeFile(file, damage + "[Software]\nb=2\nc=\"cut");
    const auto key = store.create(L"Software", KeyAccess::Full);
    EXPECT_EQ(key->readNumber(L"a"), std::nullopt);
    EXPECT_EQ(key->readNumber(L"b"), 2U);
    EXPECT_EQ(key->readText(L"c"), std::nullopt);
    EXPECT_TRUE(key->writeNumber(L"d", 4));
    EXPECT_EQ(readFile(file), damage + "[Software]\nb=2\nc=\"cut\nd=4\n");
}

TEST_F(KeyStore, LeftOverOfACrashedWriterDoesNotHinder) {
    std::filesystem::create_directories(scratch.file("config/bextora"));
    writeFile(file + ".new", "half a fi");
    EXPECT_TRUE(store.create(kPath, KeyAccess::Full)->writeNumber(L"a", 1));
    EXPECT_FALSE(pathExists(file + ".new"));
}

TEST_F(KeyStore, ThreadsDoNotLoseOneAnothersValues) {
    std::vector<std::thread> threads;
    for (const wchar_t name : {L'a', L'b', L'c', L'd'}) {
        threads.emplace_back([this, name] {
            for (std::uint32_t i = 0; i < 25; ++i) {
                const auto key = store.create(kPath, KeyAccess::Full);
                ASSERT_NE(key, nullptr);
                EXPECT_TRUE(key->writeNumber(name + std::to_wstring(i), i));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    const auto key = store.open(kPath, KeyAccess::Read);
    for (const wchar_t name : {L'a', L'b', L'c', L'd'}) {
        for (std::uint32_t i = 0; i < 25; ++i) {
            ASSERT_EQ(key->readNumber(name + std::to_wstring(i)), i) << i;
        }
    }
}

TEST_F(KeyStore, ProcessesDoNotLoseOneAnothersValues) {
    Program first({"write-store", file, "first", "60"});
    Program second({"write-store", file, "second", "60"});
    first.readLine();
    second.readLine();
    // A reader in between finds a whole file at any moment: what was there once stays there.
    std::uint32_t seen = 0;
    while (seen < 59) {
        const auto key = store.open(L"Software\\first", KeyAccess::Read);
        ASSERT_NE(key, nullptr);
        ASSERT_EQ(key->readNumber(L"first" + std::to_wstring(seen)), seen);
        if (key->readNumber(L"first" + std::to_wstring(seen + 1))) ++seen;
    }
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    for (const std::wstring name : {L"first", L"second"}) {
        const auto key = store.open(L"Software\\" + name, KeyAccess::Read);
        for (std::uint32_t i = 0; i < 60; ++i) {
            ASSERT_EQ(key->readNumber(name + std::to_wstring(i)), i);
        }
    }
}

TEST_F(KeyStore, WriterKilledAtAnyMomentLeavesAWholeFile) {
    std::mt19937 random(5);
    std::uint32_t most = 0;
    for (int round = 0; round < 25; ++round) {
        std::filesystem::remove(file);
        Program program({"write-store", file, "x", "100000"});
        ASSERT_EQ(program.readLine(), "started");
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        program.kill();
        program.wait();
        const auto key = store.open(L"Software\\x", KeyAccess::Full);
        ASSERT_NE(key, nullptr);
        std::uint32_t count = 0;
        while (key->readNumber(L"x" + std::to_wstring(count)) == count) ++count;
        const std::string bytes = readFile(file);
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), count + 1) << bytes;
        EXPECT_TRUE(key->writeNumber(L"after", 1)) << "the dead writer's lock must be free";
        most = std::max(most, count);
    }
    EXPECT_GT(most, 1U);
}

TEST_F(KeyStore, LockThatIsNeverReleasedIsNotWaitedForWithoutEnd) {
    Program program({"leave-store-locked", file});
    ASSERT_EQ(program.readLine(), "locked");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(store.create(kPath, KeyAccess::Full), nullptr);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30));
    program.kill();
    program.wait();
    EXPECT_NE(store.create(kPath, KeyAccess::Full), nullptr);
}

TEST(DefaultKeyStore, FollowsTheUsersConfigurationFolder) {
    const ScopedVariable home("HOME", "/home/someone");
    {
        const ScopedVariable config("XDG_CONFIG_HOME", "/elsewhere");
        EXPECT_EQ(posix::defaultKeyStoreFile(), "/elsewhere/bextora/keystore.ini");
    }
    for (const std::optional<std::string>& useless :
         {std::optional<std::string>(), std::optional<std::string>(""),
          std::optional<std::string>("relative")}) {
        const ScopedVariable config("XDG_CONFIG_HOME", useless);
        EXPECT_EQ(posix::defaultKeyStoreFile(), "/home/someone/.config/bextora/keystore.ini");
    }
}

TEST(DefaultKeyStore, WithoutHomeVariableTheAccountsFolderCounts) {
    const ScopedVariable config("XDG_CONFIG_HOME", std::nullopt);
    const ScopedVariable home("HOME", std::nullopt);
    const std::string file = posix::defaultKeyStoreFile();
    EXPECT_TRUE(file.empty() ||
                (file.front() == '/' && file.ends_with("/.config/bextora/keystore.ini")))
        << file;
}

}  // namespace
