#include "backends/comparer/kept_file.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using comparer::placeFile;

class KeptFile : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kept_file_XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        made = folder / "made";
        users = folder / "users";
        fs::create_directory(users);
        write(made, std::string(20'000, 'n'));
    }
    void TearDown() override {
        std::error_code ignored;
        fs::permissions(users, fs::perms::owner_all, ignored);
        fs::remove_all(folder, ignored);
    }

    static void write(const fs::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    static std::string read(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::size_t count() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(users), fs::directory_iterator()));
    }

    fs::path folder;
    fs::path made;
    fs::path users;
};

/// Writes beyond this many bytes of a file fail while the object lives.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) : before_(::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit small{bytes, limit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles() {
        ::setrlimit(RLIMIT_FSIZE, &limit_);
        ::signal(SIGXFSZ, before_);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    void (*before_)(int);
    rlimit limit_ = {};
};

TEST_F(KeptFile, IsWrittenWholeAndAlone) {
    EXPECT_EQ(placeFile(made, users / "result.glb"), "");
    EXPECT_TRUE(read(users / "result.glb") == read(made));
    EXPECT_EQ(count(), 1U);
}

TEST_F(KeptFile, MayBeEmpty) {
    write(made, "");
    EXPECT_EQ(placeFile(made, users / "result.glb"), "");
    EXPECT_TRUE(fs::exists(users / "result.glb"));
}

TEST_F(KeptFile, TakesThePlaceAndTheRightsOfAnEarlierOne) {
    const fs::path target = users / "result.glb";
    write(target, "earlier");
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    EXPECT_EQ(placeFile(made, target), "");
    EXPECT_TRUE(read(target) == read(made));
    EXPECT_EQ(fs::status(target).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(KeptFile, GoesThroughALinkToWhatItNames) {
    write(folder / "elsewhere", "earlier");
    fs::create_symlink(folder / "elsewhere", users / "link.glb");
    EXPECT_EQ(placeFile(made, users / "link.glb"), "");
    EXPECT_TRUE(fs::is_symlink(users / "link.glb"));
    EXPECT_TRUE(read(folder / "elsewhere") == read(made));
}

TEST_F(KeptFile, LeavesTheEarlierOneWhenTheDiskIsFull) {
    const fs::path target = users / "result.glb";
    write(target, "earlier");
    std::string why;
    {
        const SmallFiles small(4096);
        why = placeFile(made, target);
    }
    EXPECT_EQ(why, "File too large");
    EXPECT_EQ(fs::file_size(target), 7U) << "the earlier one is gone";
    EXPECT_EQ(count(), 1U) << "half a copy is left";
    const SmallFiles small(4096);
    EXPECT_NE(placeFile(made, users / "other.glb"), "");
    EXPECT_EQ(count(), 1U);
}

TEST_F(KeptFile, NamesWhatStandsInItsWay) {
    EXPECT_EQ(placeFile(made, users / "no" / "result.glb"), "No such file or directory");
    EXPECT_EQ(placeFile(made, users), "it is a folder");
    EXPECT_NE(placeFile(folder / "never made", users / "result.glb"), "");
    EXPECT_NE(placeFile(made, made / "result.glb"), "");
    EXPECT_EQ(count(), 0U);
}

TEST_F(KeptFile, LeavesWhatTheUserMayNotChange) {
    if (::geteuid() == 0) GTEST_SKIP() << "SKIPPED: the superuser may change everything";
    const fs::path target = users / "result.glb";
    write(target, "earlier");
    ASSERT_EQ(::chmod(target.c_str(), 0444), 0);
    EXPECT_EQ(placeFile(made, target), "Permission denied");
    ASSERT_EQ(::chmod(target.c_str(), 0644), 0);
    ASSERT_EQ(::chmod(users.c_str(), 0555), 0);
    EXPECT_EQ(placeFile(made, target), "Permission denied");
    EXPECT_EQ(read(target), "earlier");
}

TEST_F(KeptFile, IsWrittenIntoDevicesAsTheyAre) {
    EXPECT_EQ(placeFile(made, "/dev/null"), "");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(placeFile(made, "/dev/full"), "No space left on device");
}

}  // namespace
