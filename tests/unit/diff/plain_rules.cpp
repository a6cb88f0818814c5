#include "tests/unit/diff/plain_rules.h"

#include <algorithm>

#include "platform/exchange/pmi.h"
#include "platform/hps/component_type.h"

namespace plain_rules {
namespace {

std::wstring trim(const std::wstring& text, const std::wstring& characters) {
    const auto first = text.find_first_not_of(characters);
    if (first == std::wstring::npos) return L"";
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

const std::wstring kBlanks = L" \t\r\n";

std::wstring fileStem(const HPS::Component& component) {
    try {
        const HPS::StringMetadata file(component.GetMetadata("Filename"));
        std::wstring stem = file.GetValue().ToWide();
        const auto separator = stem.find_last_of(L"\\/");
        if (separator != std::wstring::npos) stem = stem.substr(separator + 1);
        const auto dot = stem.find_last_of(L'.');
        if (dot != std::wstring::npos && dot > 0) stem = stem.substr(0, dot);
        return stem;
    } catch (...) {
        return L"";
    }
}

std::wstring withoutSuffix(const std::wstring& text) {
    const std::wstring cut = trim(text.substr(0, text.find(L'(')), kBlanks);
    return cut.empty() ? text : cut;
}

void addBodies(const HPS::Component& component, Node* part, int level) {
    std::vector<std::wstring> names;
    for (const HPS::Component& found : component.GetAllSubcomponents(0x3000)) {
        const HPS::Exchange::Component item(found);
        if (!bxtexchange::PMIInfoPopulator::isMultiBody(item)) continue;
        if (found.GetComponentType() != 0x3001) continue;
        const std::wstring name = item.GetName().ToWide();
        if (name.empty() || std::find(names.begin(), names.end(), name) != names.end()) continue;
        names.push_back(name);
    }
    if (names.size() < 2) return;
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto body = std::make_unique<Node>();
        body->displayName = names[i];
        body->name = names[i];
        body->parentName = part->name;
        body->level = level + 5;
        body->siblingIndex = static_cast<int>(i);
        body->parent = part;
        part->children.push_back(std::move(body));
    }
}

void addOccurrence(const HPS::Component& component, Node* parent, int level, int& counter) {
    const std::wstring displayName = component.GetName().ToWide();
    if (component.GetComponentType() != 0x1002 || displayName.empty()) {
        for (const HPS::Component& below : component.GetSubcomponents()) {
            addOccurrence(below, parent, level, counter);
        }
        return;
    }
    auto node = std::make_unique<Node>();
    node->displayName = displayName;
    node->parentName = parent->name;
    node->level = level;
    node->siblingIndex = counter++;
    node->parent = parent;
    node->name = fileStem(component);
    if (node->name.empty()) node->name = withoutSuffix(displayName);
    node->hasSubcomponents = component.GetSubcomponents().size() >= 1;
    if (component.GetAllSubcomponents(0x1002).size() > 1) {
        int below = 0;
        for (const HPS::Component& child : component.GetSubcomponents()) {
            addOccurrence(child, node.get(), level + 5, below);
        }
    } else {
        addBodies(component, node.get(), level);
    }
    parent->children.push_back(std::move(node));
}

void markSubtree(Node* node, State state) {
    for (const auto& child : node->children) {
        child->state = state;
        markSubtree(child.get(), state);
    }
}

void matchChildren(const List& referenceList, const List& compareList);

void decide(Node* r, Node* c, bool moved, bool nameDiffers, bool countDiffers) {
    if (r->hasSubcomponents && !c->hasSubcomponents) {
        r->state = State::Deleted;
        c->state = State::Same;
    } else if (c->hasSubcomponents && !r->hasSubcomponents) {
        r->state = State::Same;
        c->state = State::Added;
    } else if (moved) {
        r->state = c->state = State::Moved;
    } else if (nameDiffers || countDiffers) {
        r->state = c->state = State::Modified;
    } else {
        r->state = c->state = State::Same;
    }
}

void matchGroup(const List& r, const List& c) {
    for (const List* side : {&r, &c}) {
        for (Node* node : *side) {
            node->referenceGroupCount = static_cast<int>(r.size());
            node->compareGroupCount = static_cast<int>(c.size());
        }
    }
    const std::size_t pairs = std::min(r.size(), c.size());
    for (std::size_t i = 0; i < pairs; ++i) {
        r[i]->peer = c[i];
        c[i]->peer = r[i];
        const bool nameDiffers = r[i]->displayName != c[i]->displayName;
        const bool countDiffers = r[i]->children.size() != c[i]->children.size();
        const bool moved = r.size() == c.size() && r[i]->siblingIndex != c[i]->siblingIndex;
        matchChildren(childrenOf(r[i]), childrenOf(c[i]));
        decide(r[i], c[i], moved, nameDiffers, countDiffers);
    }
    for (std::size_t i = pairs; i < r.size(); ++i) r[i]->state = State::Deleted;
    for (std::size_t i = pairs; i < c.size(); ++i) c[i]->state = State::Added;
}

void matchChildren(const List& referenceList, const List& compareList) {
    std::unordered_map<std::wstring, std::pair<List, List>> groups;
    for (Node* node : referenceList) groups[matchKey(node->displayName)].first.push_back(node);
    for (Node* node : compareList) groups[matchKey(node->displayName)].second.push_back(node);
    for (const auto& [key, group] : groups) matchGroup(group.first, group.second);
    for (Node* node : referenceList) {
        if (node->state == State::Deleted) markSubtree(node, State::Deleted);
    }
    for (Node* node : compareList) {
        if (node->state == State::Added) markSubtree(node, State::Added);
    }
}

void flattenToMap(Node* node, NameMap& map) {
    if (node->level >= 0 && !node->name.empty()) map[node->name].push_back(node);
    for (const auto& child : node->children) flattenToMap(child.get(), map);
}

void setMovedPaths(Node* node, const NameMap& otherMap, bool isReference) {
    if (node->state == State::Moved) {
        const std::wstring own = nodePath(node);
        const auto found = otherMap.find(node->name);
        if (found != otherMap.end() && !found->second.empty()) {
            const std::wstring other = nodePath(found->second.front());
            node->movedFromPath = isReference ? own : other;
            node->movedToPath = isReference ? other : own;
        }
    }
    for (const auto& child : node->children) setMovedPaths(child.get(), otherMap, isReference);
}

bool propagateModified(Node* node) {
    bool changed = node->level >= 0 && node->state != State::Same;
    for (const auto& child : node->children) {
        if (propagateModified(child.get())) changed = true;
    }
    if (changed && node->level >= 0 && node->state == State::Same) node->state = State::Modified;
    return changed;
}

void syncPeerModified(Node* node) {
    if (node->level >= 0 && node->state == State::Modified && node->peer &&
        node->peer->state == State::Same) {
        bool onlySameOrAdded = true;
        for (const auto& child : node->children) {
            if (child->state != State::Same && child->state != State::Added) {
                onlySameOrAdded = false;
            }
        }
        bool peerAllSame = true;
        for (const auto& child : node->peer->children) {
            if (child->state != State::Same) peerAllSame = false;
        }
        if (!onlySameOrAdded && !peerAllSame) node->peer->state = State::Modified;
    }
    for (const auto& child : node->children) syncPeerModified(child.get());
}

void demoteUnchanged(Node* node) {
    bool allSame = true;
    for (const auto& child : node->children) {
        demoteUnchanged(child.get());
        if (child->state != State::Same) allSame = false;
    }
    if (node->level >= 0 && node->state == State::Modified && allSame) node->state = State::Same;
}

const wchar_t* textOf(const Node* node) {
    static const wchar_t* const kTexts[] = {L"Same", L"Added", L"Deleted", L"Modified", L"Moved"};
    return node ? kTexts[static_cast<std::size_t>(node->state)] : L"";
}

struct Layout {
    std::vector<Row> rows;
    List leftOvers;
};

Layout alignByKey(const List& reference, const List& compare) {
    std::unordered_map<std::wstring, std::vector<std::size_t>> positions;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        positions[matchKey(reference[i]->displayName)].push_back(i);
    }
    std::vector<bool> used(reference.size(), false);
    Layout layout;
    for (const Node* node : compare) {
        const Node* partner = nullptr;
        for (const std::size_t position : positions[matchKey(node->displayName)]) {
            if (used[position]) continue;
            used[position] = true;
            partner = reference[position];
            break;
        }
        layout.rows.push_back({partner, node});
    }
    for (std::size_t i = 0; i < reference.size(); ++i) {
        if (!used[i]) layout.leftOvers.push_back(reference[i]);
    }
    return layout;
}

}  // namespace

std::unique_ptr<Node> buildTree(const HPS::Component& component) {
    auto root = std::make_unique<Node>();
    root->name = L"__root__";
    root->displayName = L"__root__";
    if (component.Empty()) return root;
    int counter = 0;
    for (const HPS::Component& below : component.GetSubcomponents()) {
        addOccurrence(below, root.get(), 0, counter);
    }
    return root;
}

std::wstring matchKey(std::wstring text) {
    text = trim(text.substr(0, text.find(L'(')), kBlanks);
    std::wstring joined;
    for (const wchar_t c : text) {
        const bool blank = kBlanks.find(c) != std::wstring::npos;
        if (!blank) {
            joined += c;
        } else if (joined.back() != L' ') {
            joined += L' ';
        }
    }
    for (wchar_t& c : joined) {
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c + 32);
    }
    const std::wstring kept = L"abcdefghijklmnopqrstuvwxyz0123456789 -_";
    std::wstring key;
    for (const wchar_t c : joined) {
        if (kept.find(c) != std::wstring::npos) key += c;
    }
    return trim(key, L" ");
}

std::wstring nodePath(const Node* node) {
    if (!node || node->level < 0) return L"";
    if (!node->parent || node->parent->level < 0) return node->displayName;
    return nodePath(node->parent) + L"." + node->displayName;
}

void diffTrees(Node* reference, Node* compare) {
    if (!reference || !compare) return;
    NameMap referenceMap, compareMap;
    flattenToMap(reference, referenceMap);
    flattenToMap(compare, compareMap);
    if (reference->children.size() == 1 && compare->children.size() == 1) {
        Node* const r = reference->children[0].get();
        Node* const c = compare->children[0].get();
        r->peer = c;
        c->peer = r;
        matchChildren(childrenOf(r), childrenOf(c));
        r->state = c->state = r->displayName == c->displayName ? State::Same : State::Modified;
    } else {
        matchChildren(childrenOf(reference), childrenOf(compare));
    }
    setMovedPaths(reference, compareMap, true);
    setMovedPaths(compare, referenceMap, false);
    propagateModified(reference);
    propagateModified(compare);
    syncPeerModified(reference);
    syncPeerModified(compare);
    demoteUnchanged(reference);
    demoteUnchanged(compare);
}

void flattenAligned(const List& reference, const List& compare, bool topLevel,
                    std::vector<FlatRow>& out) {
    auto [rows, leftOvers] = alignByKey(reference, compare);
    std::size_t next = 0;
    if (topLevel) {
        for (Row& row : rows) {
            if (!row.reference && next < leftOvers.size()) row.reference = leftOvers[next++];
        }
    }
    for (; next < leftOvers.size(); ++next) rows.push_back({leftOvers[next], nullptr});
    for (const Row& row : rows) {
        const Node* const any = row.reference ? row.reference : row.compare;
        std::wstring indent;
        if (any->level > 0) indent.assign(static_cast<std::size_t>(2 * (any->level / 5)), L' ');
        out.push_back({row.reference ? indent + row.reference->displayName : L"",
                       textOf(row.reference), row.compare ? indent + row.compare->displayName : L"",
                       textOf(row.compare)});
        const List below = childrenOf(row.reference), belowCompare = childrenOf(row.compare);
        if (!below.empty() || !belowCompare.empty()) {
            flattenAligned(below, belowCompare, false, out);
        }
    }
}

void treeRows(const List& reference, const List& compare, std::vector<Row>& out) {
    auto [rows, leftOvers] = alignByKey(reference, compare);
    for (const Node* node : leftOvers) rows.push_back({node, nullptr});
    for (const Row& row : rows) {
        out.push_back(row);
        treeRows(childrenOf(row.reference), childrenOf(row.compare), out);
    }
}

List childrenOf(const Node* node) {
    List list;
    if (!node) return list;
    for (const auto& child : node->children) list.push_back(child.get());
    return list;
}

}  // namespace plain_rules
