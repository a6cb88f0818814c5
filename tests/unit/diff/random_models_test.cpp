#include <random>
#include <unordered_map>

#include "tests/unit/diff/compared_models.h"
#include "tests/unit/diff/plain_rules.h"
#include "tests/unit/diff/recording_tree.h"

namespace {

using extract::AssemblyNode;
using support::ComponentShape;

namespace ComponentType = HPS::ComponentType;

// Small random models with few names, so that siblings collide, move and change their kind.
class RandomModel {
public:
    explicit RandomModel(std::uint32_t seed) : random_(seed) {}

    std::vector<ComponentShape> make() {
        std::vector<ComponentShape> top;
        budget_ = kLargest;
        const int count = chance(60) ? 1 : below(5);
        for (int i = 0; i < count; ++i) top.push_back(component(0));
        return top;
    }

    // The same model after a few edits.
    void edit(std::vector<ComponentShape>& siblings, int depth) {
        if (chance(10) && siblings.size() > 1) {
            std::swap(siblings[index(siblings)], siblings[index(siblings)]);
        }
        if (chance(10) && !siblings.empty()) {
            siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(index(siblings)));
        }
        if (chance(10)) {
            const auto place = siblings.begin() + below(static_cast<int>(siblings.size()) + 1);
            siblings.insert(place, component(depth));
        }
        for (ComponentShape& shape : siblings) {
            if (chance(5)) shape.name = name();
            if (chance(3)) shape.children.clear();
            if (chance(3)) shape.metadata.clear();
            edit(shape.children, depth + 1);
        }
    }

    bool chance(int percent) { return below(100) < percent; }

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::size_t index(const std::vector<ComponentShape>& list) {
        return static_cast<std::size_t>(below(static_cast<int>(list.size())));
    }

    std::string name() {
        static const char* const kNames[] = {
            "A",       "a",        "A (1)",         "A (2)", "B",        "B.",       "b (1)", "C",
            "D  e",    "D\te (7)", "(1)",           "",      "\xC3\xA4", "\xD0\x91", "A.B",   "a b",
            "Bolt M8", "a . b",    "bolt   m8 (3)", "  C ",  "-_-"};
        return kNames[below(static_cast<int>(std::size(kNames)))];
    }

    ComponentShape component(int depth) {
        const int kind = below(100);
        if (kind < 8) return support::occurrence(name());
        if (kind < 18) return bodies();
        if (kind < 26) return support::item(ComponentType::PartDefinition, name(), list(depth));
        if (kind < 45 || depth > 4) return support::part(name());
        ComponentShape shape = support::occurrence(name(), list(depth));
        if (chance(15)) shape = shape.with("Filename", "C:\\m\\" + name() + ".prt");
        return shape;
    }

    ComponentShape bodies() {
        std::vector<std::string> names;
        for (int i = below(5); i > 0; --i) names.push_back(name());
        return support::part(name(), names);
    }

    std::vector<ComponentShape> list(int depth) {
        std::vector<ComponentShape> shapes;
        for (int i = below(chance(10) ? 30 : 6); i > 0 && --budget_ > 0; --i)
            shapes.push_back(component(depth + 1));
        return shapes;
    }

    static constexpr int kLargest = 80;

    std::mt19937 random_;
    int budget_ = kLargest;
};

using Counterparts = std::unordered_map<const plain_rules::Node*, const AssemblyNode*>;

void collect(const AssemblyNode* node, const plain_rules::Node* plain, Counterparts& out) {
    out[plain] = node;
    ASSERT_EQ(node->children.size(), plain->children.size());
    for (std::size_t i = 0; i < node->children.size(); ++i) {
        collect(node->children[i], plain->children[i].get(), out);
    }
}

class RandomModels : public ComparedModels, public testing::WithParamInterface<std::uint32_t> {
protected:
    void compareBothWays(const Shapes& reference, const Shapes& compare) {
        const HPS::CADModel referenceModel = support::makeModel(reference);
        const HPS::CADModel compareModel = support::makeModel(compare);
        engine_.BuildAndDiff(referenceModel, compareModel);
        reference_ = plain_rules::buildTree(referenceModel);
        compare_ = plain_rules::buildTree(compareModel);
        plain_rules::diffTrees(reference_.get(), compare_.get());
        counterparts_.clear();
        collect(engine_.referenceRoot(), reference_.get(), counterparts_);
        collect(engine_.compareRoot(), compare_.get(), counterparts_);
        checkNodes();
        checkRows();
        checkTrees();
    }

    const AssemblyNode* counterpart(const plain_rules::Node* plain) const {
        const auto found = counterparts_.find(plain);
        return found == counterparts_.end() ? nullptr : found->second;
    }

    void checkNodes() const {
        for (const auto& [plain, node] : counterparts_) {
            ASSERT_EQ(node->name, plain->name);
            ASSERT_EQ(node->displayName, plain->displayName);
            ASSERT_EQ(node->parentName, plain->parentName);
            ASSERT_EQ(node->level, plain->level);
            ASSERT_EQ(node->siblingIndex, plain->siblingIndex);
            ASSERT_EQ(node->parent, counterpart(plain->parent));
            ASSERT_EQ(static_cast<int>(node->state), static_cast<int>(plain->state));
            ASSERT_EQ(node->movedFromPath, plain->movedFromPath);
            ASSERT_EQ(node->movedToPath, plain->movedToPath);
            ASSERT_EQ(node->referenceGroupCount, plain->referenceGroupCount);
            ASSERT_EQ(node->compareGroupCount, plain->compareGroupCount);
            ASSERT_EQ(node->hasSubcomponents, plain->hasSubcomponents);
            ASSERT_EQ(node->peer, counterpart(plain->peer));
        }
    }

    void checkRows() const {
        std::vector<plain_rules::FlatRow> expected;
        plain_rules::flattenAligned(plain_rules::childrenOf(reference_.get()),
                                    plain_rules::childrenOf(compare_.get()), true, expected);
        std::vector<std::wstring> names, states, compareNames, compareStates;
        engine_.FlattenPSTreeAligned(names, states, compareNames, compareStates);
        ASSERT_EQ(names.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const plain_rules::FlatRow row = {names[i], states[i], compareNames[i],
                                              compareStates[i]};
            ASSERT_EQ(row, expected[i]) << i;
        }
    }

    void checkTrees() {
        RecordingTree referenceTree, compareTree;
        engine_.PopulateTrees(referenceTree, compareTree);
        std::vector<plain_rules::Row> expected;
        plain_rules::treeRows(plain_rules::childrenOf(reference_.get()),
                              plain_rules::childrenOf(compare_.get()), expected);
        std::size_t nextReference = 0, nextCompare = 0;
        for (const auto& row : expected) {
            if (row.reference) {
                const auto* node = counterpart(row.reference);
                ASSERT_EQ(referenceTree.items.at(nextReference++).data.data, node);
                const auto* other = counterpart(row.compare);
                ASSERT_EQ(node->peerTreeItem, other ? other->ownTreeItem : nullptr);
            }
            if (row.compare) {
                const auto* node = counterpart(row.compare);
                ASSERT_EQ(compareTree.items.at(nextCompare++).data.data, node);
            }
        }
        ASSERT_EQ(referenceTree.itemCount(), nextReference);
        ASSERT_EQ(compareTree.itemCount(), nextCompare);
    }

    support::ScopedMultiBody multiBody_;
    std::unique_ptr<plain_rules::Node> reference_, compare_;
    Counterparts counterparts_;
};

TEST_P(RandomModels, AgreeWithThePlainRules) {
    constexpr std::uint32_t kModelsPerCase = 250;
    for (std::uint32_t i = 0; i < kModelsPerCase && !HasFatalFailure(); ++i) {
        const std::uint32_t seed = GetParam() * kModelsPerCase + i;
        SCOPED_TRACE(seed);
        RandomModel random(seed);
        const Shapes reference = random.make();
        Shapes compare = random.chance(20) ? random.make() : reference;
        for (int edits = 0; random.chance(60) && edits < 3; ++edits) random.edit(compare, 0);
        compareBothWays(reference, compare);
        compareBothWays(compare, reference);
    }
}

INSTANTIATE_TEST_SUITE_P(Diff, RandomModels, testing::Range(0U, 8U));

}  // namespace
