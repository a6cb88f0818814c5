#include "backends/occt/service/import_cache.h"

#include "tests/unit/backends/occt/service/fake_helpers.h"

namespace {

using HPS::Exchange::ImportOptions;
using occt::ImportCache;
using os::ProcessEnd;
using State = occt::ImportJob::State;

class ImportCaches : public service_test::ScriptedService {
protected:
    void finishWell(std::size_t index) {
        helper(index).leaveDocument();
        helper(index).finish(ProcessEnd::Exited, 0);
    }
    std::size_t started() const { return processes->started.size(); }

    std::string path = writeFile("a.step", "one");
    ImportCache cache{observer};
};

TEST_F(ImportCaches, TheSameFileIsOneImport) {
    const auto first = cache.get(path, {});
    EXPECT_EQ(cache.get(path, {}), first) << "while it runs";
    finishWell(0);
    ASSERT_EQ(first->poll(), State::Done);
    EXPECT_EQ(cache.get(path, {}), first) << "and when it has ended";
    EXPECT_EQ(started(), 1U);
}

TEST_F(ImportCaches, OneFileHasOneImportHoweverItIsCalled) {
    std::filesystem::create_symlink(path, scratch / "link.step");
    std::filesystem::create_directory(scratch / "sub");
    const auto first = cache.get(path, {});
    EXPECT_EQ(cache.get((scratch / "sub/../a.step").string(), {}), first);
    EXPECT_EQ(cache.get((scratch / "link.step").string(), {}), first);
    EXPECT_NE(cache.get(writeFile("b.step", "one"), {}), first) << "a copy is another file";
}

TEST_F(ImportCaches, OtherOptionsAreAnotherImport) {
    ImportOptions other;
    other.pmi = false;
    EXPECT_NE(cache.get(path, {}), cache.get(path, other));
    EXPECT_EQ(started(), 2U);
}

TEST_F(ImportCaches, AChangedFileIsImportedAgain) {
    const auto first = cache.get(path, {});
    writeFile("a.step", "three");
    const auto second = cache.get(path, {});
    EXPECT_NE(second, first) << "another size";
    const auto time = std::filesystem::last_write_time(path);
    std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
    const auto third = cache.get(path, {});
    EXPECT_NE(third, second) << "another time";
    std::filesystem::last_write_time(path, time);
    EXPECT_EQ(cache.get(path, {}), second) << "back again";
}

TEST_F(ImportCaches, WhatEndedWellIsKeptAndNothingElse) {
    auto first = cache.get(path, {});
    finishWell(0);
    ASSERT_EQ(first->poll(), State::Done);
    cache.keep(first);
    const auto* const address = first.get();
    first.reset();
    EXPECT_EQ(cache.get(path, {}).get(), address);
    EXPECT_EQ(started(), 1U);

    const std::string other = writeFile("b.step", "b");
    cache.get(other, {});
    EXPECT_TRUE(helper(1).gone) << "nobody waits for it";
    cache.get(other, {});
    EXPECT_EQ(started(), 3U);
}

TEST_F(ImportCaches, FailedAndCancelledImportsAreTriedAgain) {
    const auto failed = cache.get(path, {});
    helper().finish(ProcessEnd::Crashed, 11);
    const auto second = cache.get(path, {});
    EXPECT_NE(second, failed);
    second->cancel();
    EXPECT_NE(cache.get(path, {}), second);
    EXPECT_EQ(started(), 3U);
}

TEST_F(ImportCaches, GeometryComesFromAnImportThatHasIt) {
    ImportOptions noSolids;
    noSolids.solids = false;
    ImportOptions noSurfaces;
    noSurfaces.surfaces = false;
    ImportOptions meshes;
    meshes.brepMode = HPS::Exchange::BRepMode::TessellationOnly;
    ImportOptions bare;
    bare.pmi = bare.attributes = bare.wireframes = false;
    const auto a = cache.get(path, noSolids);
    const auto b = cache.get(path, noSurfaces);
    const auto c = cache.get(path, meshes);
    const auto full = cache.get(path, bare);
    EXPECT_EQ(cache.getWithGeometry(path), full);
    const std::string other = writeFile("b.step", "b");
    const auto partial = cache.get(other, noSolids);
    EXPECT_NE(cache.getWithGeometry(other), partial);
    EXPECT_EQ(started(), 6U);
}

TEST_F(ImportCaches, CancelAllEndsWhatRuns) {
    const auto first = cache.get(path, {});
    const auto second = cache.get(writeFile("b.step", "b"), {});
    const auto done = cache.get(writeFile("c.step", "c"), {});
    finishWell(2);
    ASSERT_EQ(done->poll(), State::Done);
    cache.cancelAll();
    EXPECT_EQ(first->poll(), State::Canceled);
    EXPECT_EQ(second->poll(), State::Canceled);
    EXPECT_EQ(done->poll(), State::Done);
}

TEST_F(ImportCaches, AMissingFileIsTheHelpersToTell) {
    EXPECT_EQ(cache.get("/no/such/file", {}), cache.get("/no/such/file", {}));
    EXPECT_EQ(started(), 1U);
}

}  // namespace
