#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/hps/component.h"

/// The rules of the comparison in their plainest form: recursive, one pass after the other, one
/// map per question, no regard to speed or depth. What the engine must agree with.
namespace plain_rules {

enum class State : std::int32_t { Same, Added, Deleted, Modified, Moved };

struct Node {
    std::wstring name;
    std::wstring displayName;
    std::wstring parentName;
    int level = -1;
    int siblingIndex = 0;
    std::vector<std::unique_ptr<Node>> children;
    Node* parent = nullptr;
    State state = State::Same;
    std::wstring movedFromPath;
    std::wstring movedToPath;
    int referenceGroupCount = 0;
    int compareGroupCount = 0;
    bool hasSubcomponents = true;
    Node* peer = nullptr;
};

using List = std::vector<Node*>;
using NameMap = std::unordered_map<std::wstring, List>;

struct Row {
    const Node* reference = nullptr;
    const Node* compare = nullptr;
    bool operator==(const Row&) const = default;
};

struct FlatRow {
    std::wstring referenceName, referenceState, compareName, compareState;
    bool operator==(const FlatRow&) const = default;
};

std::unique_ptr<Node> buildTree(const HPS::Component& component);
std::wstring matchKey(std::wstring text);
std::wstring nodePath(const Node* node);
void diffTrees(Node* reference, Node* compare);

/// Rows of one pair of sibling lists and of everything below them, in display order.
void flattenAligned(const List& reference, const List& compare, bool topLevel,
                    std::vector<FlatRow>& out);

/// Rows as the tree controls show them.
void treeRows(const List& reference, const List& compare, std::vector<Row>& out);

List childrenOf(const Node* node);

}  // namespace plain_rules
