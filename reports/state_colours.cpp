#include "reports/state_colours.h"

#include "extract/assembly_node.h"

namespace reports {
namespace {

using extract::AssemblyDiffState;
using extract::ItemDiffState;

ItemDiffState codeOf(std::wstring_view text) {
    if (text == extract::StateText(AssemblyDiffState::Added)) return ItemDiffState::OnlyInCompare;
    if (text == extract::StateText(AssemblyDiffState::Deleted))
        return ItemDiffState::OnlyInReference;
    const bool changed = text == extract::StateText(AssemblyDiffState::Modified) ||
                         text == extract::StateText(AssemblyDiffState::Moved);
    return changed ? ItemDiffState::Different : ItemDiffState::Unchanged;
}

}  // namespace

std::wstring_view stateColourName(std::wstring_view text) {
    return rowCodeColourName(codeOf(text));
}

std::wstring_view rowCodeColourName(ItemDiffState code) {
    switch (code) {
        case ItemDiffState::OnlyInReference: return L"red";
        case ItemDiffState::OnlyInCompare: return L"teal";
        case ItemDiffState::Different: return L"orange";
        case ItemDiffState::Unchanged: break;
    }
    return L"black";
}

States stateTextToCode(const Column& texts) {
    States codes;
    codes.reserve(texts.size());
    for (const std::wstring& text : texts) codes.push_back(codeOf(text));
    return codes;
}

RgbColour rowCodeColour(ItemDiffState code) {
    switch (code) {
        case ItemDiffState::OnlyInReference: return {255, 0, 0};
        case ItemDiffState::OnlyInCompare: return {0, 109, 91};
        case ItemDiffState::Different: return {255, 127, 0};
        case ItemDiffState::Unchanged: break;
    }
    return {0, 0, 0};
}

}  // namespace reports
