#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "diff/assembly_diff_engine.h"
#include "tests/support/memory_model.h"

/// Two models written down as nested expressions, compared.
class ComparedModels : public testing::Test {
protected:
    using Lines = std::vector<std::wstring>;
    using Shapes = std::vector<support::ComponentShape>;

    void compare(const Shapes& reference, const Shapes& compare) {
        engine_.BuildAndDiff(reference.empty() ? HPS::CADModel() : support::makeModel(reference),
                             compare.empty() ? HPS::CADModel() : support::makeModel(compare));
    }

    /// One line per node below the root, in pre-order: display name and state.
    static Lines states(const extract::AssemblyNode* root) {
        Lines lines;
        for (auto* node = extract::NextPreOrder(root, root); node;
             node = extract::NextPreOrder(node, root)) {
            lines.push_back(node->displayName + L": " + std::wstring(extract::StateText(node)));
        }
        return lines;
    }
    Lines referenceStates() const { return states(engine_.referenceRoot()); }
    Lines compareStates() const { return states(engine_.compareRoot()); }

    /// Rows as "name state | name state".
    Lines rows() const {
        Lines names, state, compareNames, compareState, lines;
        engine_.FlattenPSTreeAligned(names, state, compareNames, compareState);
        for (std::size_t i = 0; i < names.size(); ++i) {
            lines.push_back(names[i] + L" " + state[i] + L" | " + compareNames.at(i) + L" " +
                            compareState.at(i));
        }
        EXPECT_EQ(state.size(), names.size());
        EXPECT_EQ(compareNames.size(), names.size());
        EXPECT_EQ(compareState.size(), names.size());
        return lines;
    }

    /// Node by positions from the root, for instance {0, 2}.
    static const extract::AssemblyNode& at(const extract::AssemblyNode* root,
                                           const std::vector<std::size_t>& positions) {
        for (const std::size_t position : positions) root = root->children.at(position);
        return *root;
    }
    const extract::AssemblyNode& reference(const std::vector<std::size_t>& positions) const {
        return at(engine_.referenceRoot(), positions);
    }
    const extract::AssemblyNode& compared(const std::vector<std::size_t>& positions) const {
        return at(engine_.compareRoot(), positions);
    }

    diff::AssemblyDiffEngine engine_;
};
