#include "tests/unit/diff/compared_models.h"
#include "tests/unit/diff/recording_tree.h"

namespace {

constexpr std::size_t kDepth = 20000;

// Assemblies of one child each.
HPS::CADModel chain(const std::string& lastName, std::size_t depth = kDepth) {
    support::MemoryModel::Builder builder;
    HPS::ComponentId end = 0;
    for (std::size_t i = 0; i + 1 < depth; ++i) end = builder.addOccurrence(end, "x");
    builder.addOccurrence(end, lastName);
    return HPS::CADModel(builder.finish());
}

class DeepModels : public ComparedModels {};

TEST_F(DeepModels, UnchangedChainIsTheSame) {
    engine_.BuildAndDiff(chain("x"), chain("x"));
    const auto rows = engine_.AlignedRows();
    ASSERT_EQ(rows.size(), kDepth);
    EXPECT_EQ(rows.back().indent, 2 * (kDepth - 1));
    for (const auto& row : rows) {
        ASSERT_EQ(row.reference->peer, row.compare);
        ASSERT_EQ(row.reference->state, extract::AssemblyDiffState::Same);
    }
}

TEST_F(DeepModels, AChangeAtTheBottomReachesTheTop) {
    engine_.BuildAndDiff(chain("old"), chain("new"));
    EXPECT_EQ(reference({0}).state, extract::AssemblyDiffState::Modified);
    EXPECT_EQ(compared({0}).state, extract::AssemblyDiffState::Modified);
    const auto rows = engine_.AlignedRows();
    ASSERT_EQ(rows.size(), kDepth + 1);
    EXPECT_EQ(rows[kDepth].reference->state, extract::AssemblyDiffState::Deleted);
    EXPECT_EQ(rows[kDepth - 1].compare->state, extract::AssemblyDiffState::Added);
}

TEST_F(DeepModels, AgainstNothingAreAllDeletedOrAdded) {
    engine_.BuildAndDiff(chain("x"), HPS::CADModel());
    for (const auto& row : engine_.AlignedRows()) {
        ASSERT_EQ(row.reference->state, extract::AssemblyDiffState::Deleted);
        ASSERT_EQ(row.compare, nullptr);
    }
    engine_.BuildAndDiff(HPS::CADModel(), chain("x"));
    EXPECT_EQ(engine_.AlignedRows().back().compare->state, extract::AssemblyDiffState::Added);
}

TEST_F(DeepModels, HavePathsToTheBottom) {
    engine_.BuildAndDiff(chain("x"), chain("x"));
    const auto* const bottom = engine_.AlignedRows().back().reference;
    EXPECT_EQ(diff::AssemblyDiffEngine::GetNodePath(bottom).size(), 2 * kDepth - 1);
}

TEST_F(DeepModels, FillTreeControls) {
    engine_.BuildAndDiff(chain("old"), chain("new"));
    RecordingTree referenceTree, compareTree;
    engine_.PopulateTrees(referenceTree, compareTree);
    EXPECT_EQ(referenceTree.itemCount(), kDepth);
    EXPECT_EQ(compareTree.items.back().depth, static_cast<int>(kDepth) - 1);
}

// The indents alone of 20,000 levels make 1.6 GB of text on a side. One side is enough here, and
// the sanitizers' own memory on top of it would be too much for many machines.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kTextDepth = 2000;
#else
constexpr std::size_t kTextDepth = kDepth;
#endif

TEST_F(DeepModels, FlattenToText) {
    engine_.BuildAndDiff(chain("x", kTextDepth), HPS::CADModel());
    std::vector<std::wstring> names, states, compareNames, compareStates;
    engine_.FlattenPSTreeAligned(names, states, compareNames, compareStates);
    ASSERT_EQ(names.size(), kTextDepth);
    EXPECT_EQ(names.back().size(), 2 * (kTextDepth - 1) + 1);
    EXPECT_EQ(states.back(), L"Deleted");
    EXPECT_EQ(compareNames.back(), L"");
}

}  // namespace
