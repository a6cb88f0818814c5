#include "extract/assembly_node.h"

namespace extract {

std::wstring_view StateText(AssemblyDiffState state) {
    switch (state) {
        case AssemblyDiffState::Added: return L"Added";
        case AssemblyDiffState::Deleted: return L"Deleted";
        case AssemblyDiffState::Modified: return L"Modified";
        case AssemblyDiffState::Moved: return L"Moved";
        case AssemblyDiffState::Same: break;
    }
    return L"Same";
}

std::wstring_view StateText(const AssemblyNode* node) {
    return node ? StateText(node->state) : std::wstring_view();
}

std::wstring GetNodePath(const AssemblyNode* node) {
    std::vector<const AssemblyNode*> upwards;
    std::size_t length = 0;
    for (; node && node->level >= 0; node = node->parent) {
        upwards.push_back(node);
        length += node->displayName.size() + 1;
    }
    std::wstring path;
    path.reserve(length);
    for (auto step = upwards.rbegin(); step != upwards.rend(); ++step) {
        if (step != upwards.rbegin()) path += L'.';
        path += (*step)->displayName;
    }
    return path;
}

}  // namespace extract
