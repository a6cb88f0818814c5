#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "backends/comparer/body_pair.h"
#include "backends/comparer/deviation.h"
#include "backends/comparer/matching.h"
#include "tests/support/step_text.h"
#include "tests/unit/backends/comparer/step_model.h"

namespace {

using bxtexchange::GeometryState;
namespace fs = std::filesystem;

struct Counts {
    std::map<GeometryState, int> states;
    std::map<std::string, GeometryState> byPath;
    int of(GeometryState state) const {
        const auto found = states.find(state);
        return found == states.end() ? 0 : found->second;
    }
};

std::multiset<std::string> digestsOf(const FakeModel& model) {
    comparer::Names names;
    std::multiset<std::string> digests;
    const comparer::Side side = comparer::collectSide(model, names);
    for (const comparer::Body& body : side.bodies) digests.insert(body.digest);
    return digests;
}

Counts compareModels(const FakeModel& reference, const FakeModel& compare) {
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances);
    Counts counts;
    for (const auto& match :
         comparer::matchInstances(a, b, names, classes, tolerances, [](double) {})) {
        ++counts.states[match.state];
        const bool inReference = match.reference != comparer::Match::kNone;
        const auto& side = inReference ? a : b;
        const auto number = static_cast<std::size_t>(inReference ? match.reference : match.compare);
        if (match.state == GeometryState::Unchanged) continue;
        counts.byPath[comparer::displayPath(side, side.instances[number], names)] = match.state;
    }
    return counts;
}

/// A folder of its own, since cases run side by side.
fs::path freshFolder() {
    std::string name = (fs::temp_directory_path() / "comparer_test_XXXXXX").string();
    return mkdtemp(name.data()) ? fs::path(name) : fs::path();
}

/// Files of a size that takes a moment; large ones go through the whole program elsewhere.
constexpr std::uintmax_t kLargestFile = 600000;
/// And those whose faces are all looked at, several times.
constexpr std::uintmax_t kSmallFile = 150000;

std::vector<fs::path> stepFilesOf(const char* folder) {
    const char* const data = std::getenv("BEXTORA_TEST_DATA");
    std::vector<fs::path> files;
    if (data == nullptr) return files;
    for (const auto& entry : fs::directory_iterator(fs::path(data) / folder)) {
        std::string extension = entry.path().extension().string();
        std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
        const bool small = entry.file_size() <= kLargestFile;
        if (small && (extension == ".stp" || extension == ".step")) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(Gearbox, PairGivesExactlyTheIntendedChanges) {
    const fs::path samples(BEXTORA_SAMPLES);
    const auto reference = readStepModel((samples / "gearbox_reference.step").string());
    const auto compare = readStepModel((samples / "gearbox_compare.step").string());
    ASSERT_TRUE(reference && compare);
    const Counts counts = compareModels(*reference, *compare);
    EXPECT_EQ(counts.of(GeometryState::Unchanged), 24);
    EXPECT_EQ(counts.of(GeometryState::Moved), 1);
    EXPECT_EQ(counts.of(GeometryState::Changed), 1);
    EXPECT_EQ(counts.of(GeometryState::OnlyInReference), 1);
    EXPECT_EQ(counts.of(GeometryState::OnlyInCompare), 3);
    EXPECT_EQ(counts.of(GeometryState::NotCompared), 0);
    const std::string root = "Getriebe größe 2 / ";
    const std::map<std::string, GeometryState> expected = {
        {root + "Oil plug", GeometryState::Moved},
        {root + "出力軸 / 歯車 18", GeometryState::Changed},
        {root + "Sight glass", GeometryState::OnlyInReference},
        {root + "Сапун", GeometryState::OnlyInCompare},
        {root + "Bolt M8x25", GeometryState::OnlyInCompare},
    };
    EXPECT_EQ(counts.byPath, expected);
}

TEST(RealFiles, OnePartInTwoSchemasIsUnchanged) {
    std::vector<fs::path> twins = stepFilesOf("A-revisions");
    std::erase_if(twins, [](const fs::path& path) {
        return path.string().find("base_interface") == std::string::npos;
    });
    if (twins.size() != 2) GTEST_SKIP() << "BEXTORA_TEST_DATA names no folder with the twins";
    const auto first = readStepModel(twins[0].string());
    const auto second = readStepModel(twins[1].string());
    ASSERT_TRUE(first && second);
    const Counts counts = compareModels(*first, *second);
    EXPECT_EQ(counts.of(GeometryState::Unchanged), 1);
    EXPECT_TRUE(counts.byPath.empty());
}

using LookAtCopy =
    std::function<void(const FakeModel& original, const FakeModel& shuffled, const fs::path& file)>;

/// Each file beside a copy with other entity numbers in another order.
void forEachShuffled(const std::vector<fs::path>& files, const LookAtCopy& look) {
    const fs::path folder = freshFolder();
    const std::string shuffled = (folder / "shuffled.step").string();
    for (const fs::path& file : files) {
        std::ifstream in(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(in), {});
        const auto text = support::StepText::parse(bytes);
        const auto original = readStepModel(file.string());
        if (!text || !original) continue;
        std::ofstream(shuffled, std::ios::binary)
            << support::renumberedAndShuffled(*text, 7).write();
        const auto again = readStepModel(shuffled);
        ASSERT_TRUE(again) << file;
        look(*original, *again, file);
    }
    fs::remove_all(folder);
}

std::vector<fs::path> allStepFiles() {
    std::vector<fs::path> files = stepFilesOf("A-revisions");
    for (fs::path& more : stepFilesOf("A-singles")) files.push_back(std::move(more));
    return files;
}

TEST(RealFiles, RenumberedAndShuffledEntitiesKeepEveryDigest) {
    const std::vector<fs::path> files = allStepFiles();
    if (files.empty()) GTEST_SKIP() << "BEXTORA_TEST_DATA names no folder with STEP files";
    forEachShuffled(files,
                    [](const FakeModel& original, const FakeModel& shuffled, const fs::path& file) {
                        EXPECT_EQ(digestsOf(shuffled), digestsOf(original)) << file;
                    });
}

/// Every body against the one in the same place of another reading of its file, as if nobody knew
/// that they are the same: what is equal must be found equal by its faces, all along them.
void expectNoDeviation(const FakeModel& reference, const FakeModel& compare, const fs::path& file) {
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances, comparer::Shortcuts::Off);
    const auto matches = comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
    std::set<std::uint32_t> seen;
    for (const comparer::Match& match : matches) {
        ASSERT_EQ(match.state, GeometryState::Unchanged) << file;
        const auto& one = a.instances[static_cast<std::size_t>(match.reference)];
        const auto& two = b.instances[static_cast<std::size_t>(match.compare)];
        if (!seen.insert(one.body).second) continue;
        const gp_Trsf world = two.placement.Inverted() * one.placement;
        const comparer::BodyPair pair = comparer::compareBodies(
            a.bodies[one.body], b.bodies[two.body], world, tolerances, 120.0);
        ASSERT_EQ(pair.state, comparer::BodyPair::State::Compared) << file;
        EXPECT_TRUE(pair.same) << file << ": body " << one.body;
        comparer::FaceMatching all;
        for (std::uint32_t p = 0; p < pair.reference->patches().size(); ++p)
            all.removed.push_back(p);
        for (std::uint32_t p = 0; p < pair.compare->patches().size(); ++p) all.added.push_back(p);
        all.referenceEdgeKept.assign(pair.reference->edges().list.size(), false);
        all.compareEdgeKept.assign(pair.compare->edges().list.size(), false);
        const double mm =
            comparer::largestDeviationMm(*pair.reference, *pair.compare, pair.motion, all);
        EXPECT_LE(mm, 1e-5) << file << ": body " << one.body;
    }
}

TEST(RealFiles, WithoutShortcutsAFileAndItsShuffledCopyDeviateNowhere) {
    std::vector<fs::path> files = allStepFiles();
    std::erase_if(files, [](const fs::path& file) { return fs::file_size(file) > kSmallFile; });
    if (files.empty()) GTEST_SKIP() << "BEXTORA_TEST_DATA names no folder with STEP files";
    forEachShuffled(files,
                    [](const FakeModel& original, const FakeModel& shuffled, const fs::path& file) {
                        const auto again = readStepModel(file.string());
                        ASSERT_TRUE(again) << file;
                        expectNoDeviation(original, *again, file);
                        expectNoDeviation(original, shuffled, file);
                    });
}

TEST(RealFiles, PairsComparedTheOtherWayRoundExchangeTheirFaces) {
    const std::vector<fs::path> files = stepFilesOf("A-revisions");
    if (files.empty()) GTEST_SKIP() << "BEXTORA_TEST_DATA names no folder with STEP files";
    int pairs = 0;
    for (const char* const part : {"LockClip", "Base_part1", "BaseFoot"}) {
        std::vector<fs::path> revisions;
        for (const fs::path& file : files) {
            if (file.string().find(part) != std::string::npos) revisions.push_back(file);
        }
        if (revisions.size() != 2) continue;
        const auto first = readStepModel(revisions[0].string());
        const auto second = readStepModel(revisions[1].string());
        ASSERT_TRUE(first && second);
        comparer::Names names;
        const comparer::Side a = comparer::collectSide(*first, names);
        const comparer::Side b = comparer::collectSide(*second, names);
        ASSERT_EQ(a.bodies.size(), 1U);
        ASSERT_EQ(b.bodies.size(), 1U);
        const auto there = comparer::compareBodies(a.bodies[0], b.bodies[0], {}, {}, 120.0);
        const auto back = comparer::compareBodies(b.bodies[0], a.bodies[0], {}, {}, 120.0);
        EXPECT_FALSE(there.same) << part;
        EXPECT_EQ(there.difference.referenceFaces, back.difference.compareFaces) << part;
        EXPECT_EQ(there.difference.compareFaces, back.difference.referenceFaces) << part;
        EXPECT_EQ(there.difference.numbers.unchangedFaces, back.difference.numbers.unchangedFaces);
        EXPECT_NEAR(there.difference.numbers.largestDeviationMm,
                    back.difference.numbers.largestDeviationMm, 1e-6)
            << part;
        ++pairs;
    }
    if (pairs == 0) GTEST_SKIP() << "BEXTORA_TEST_DATA holds none of the pairs";
}

class ReExport : public testing::TestWithParam<const char*> {};

TEST_P(ReExport, LeavesEveryInstanceUnchanged) {
    const std::vector<fs::path> files = allStepFiles();
    if (files.empty()) GTEST_SKIP() << "BEXTORA_TEST_DATA names no folder with STEP files";
    const fs::path folder = freshFolder();
    for (const fs::path& file : files) {
        const auto original = readStepModel(file.string());
        if (!original) continue;
        const fs::path again = folder / "again.step";
        ASSERT_TRUE(rewriteStep(file.string(), again.string(), GetParam())) << file;
        const auto rewritten = readStepModel(again.string());
        ASSERT_TRUE(rewritten) << file;
        const Counts counts = compareModels(*original, *rewritten);
        for (const auto& [path, state] : counts.byPath) {
            ADD_FAILURE() << file.filename() << ": " << path << " is in state "
                          << static_cast<int>(state);
        }
    }
    fs::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(Units, ReExport, testing::Values("MM", "INCH"),
                         [](const auto& row) { return std::string(row.param); });

}  // namespace
