#include "resources/dialog_templates.h"

#include <algorithm>
#include <iterator>

namespace resources {
namespace {

using ui::ControlKind;
using ui::DialogTemplate;

struct TemplateRow {
    DialogKind kind;
    const wchar_t* language;  ///< null: every other language
    int id;
};

constexpr TemplateRow kTemplates[] = {
    {DialogKind::CompareFiles, L"fr", 177}, {DialogKind::CompareFiles, L"de", 175},
    {DialogKind::CompareFiles, L"ja", 178}, {DialogKind::CompareFiles, L"ko", 188},
    {DialogKind::CompareFiles, L"zh", 193}, {DialogKind::CompareFiles, L"es", 207},
    {DialogKind::CompareFiles, L"pt", 208}, {DialogKind::CompareFiles, nullptr, 103},
    {DialogKind::Results, L"de", 1350},     {DialogKind::Results, L"ja", 1351},
    {DialogKind::Results, L"zh", 1352},     {DialogKind::Results, L"ko", 1353},
    {DialogKind::Results, L"es", 1354},     {DialogKind::Results, L"fr", 1355},
    {DialogKind::Results, L"pt", 1356},     {DialogKind::Results, nullptr, 1300},
};

constexpr const wchar_t* kFont = L"MS Shell Dlg";
constexpr int kNoId = -1;

DialogTemplate compareFilesLayout() {
    using namespace compare_files_dialog;
    return {.id = 0,
            .caption = L"Compare Files",
            .font = kFont,
            .width = 287,
            .height = 116,
            .controls = {
                {kNoId, ControlKind::GroupBox, {11, 7, 268, 59}, L"Compare following files"},
                {kReferenceEdit, ControlKind::FileEdit, {22, 22, 253, 14}, L""},
                {kCompareEdit, ControlKind::FileEdit, {22, 44, 253, 14}, L""},
                {kMessage, ControlKind::StaticText, {14, 74, 257, 17}, L""},
                {kCompareButton, ControlKind::DefaultButton, {116, 97, 50, 14}, L"Compare"},
            }};
}

ui::DialogRect panelPlace(bool left, int top, int height) {
    return {left ? 10 : 215, top, 195, height};
}

DialogTemplate resultsLayout() {
    using namespace results_dialog;
    constexpr ui::DialogRect kAside{-500, -500, 10, 10};
    DialogTemplate shape;
    shape.caption = L"Compare";
    shape.font = kFont;
    shape.width = 420;
    shape.height = 260;
    shape.controls = {
        {kSectionList, ControlKind::ListBox, kAside, L""},
        {kAssemblyRadio, ControlKind::RadioButton, kAside, L""},
        {kPartRadio, ControlKind::RadioButton, kAside, L""},
        {kCopy, ControlKind::PushButton, {294, 240, 56, 14}, L"Copy"},
        {kSave, ControlKind::PushButton, {354, 240, 56, 14}, L"Save"},
        {kUnchanged, ControlKind::CheckBox, {345, 44, 65, 10}, L"Unchanged", false},
    };
    constexpr int kLists[] = {kReferenceBom, kReferenceAttributes, kReferencePmi,
                              kReferenceFileInfo};
    for (const int left : kLists) {
        const auto add = [&shape](int id, ControlKind kind, const ui::DialogRect& place) {
            shape.controls.push_back({id, kind, place, L""});
        };
        // Each list is followed by its partner and by the two labels over them.
        add(left, ControlKind::List, panelPlace(true, 74, 158));
        add(left + 1, ControlKind::List, panelPlace(false, 74, 158));
        add(left + 2, ControlKind::StaticText, panelPlace(true, 60, 12));
        add(left + 3, ControlKind::StaticText, panelPlace(false, 60, 12));
    }
    return shape;
}

}  // namespace

int dialogTemplateId(DialogKind kind, const std::wstring& language) {
    const auto row = std::find_if(
        std::begin(kTemplates), std::end(kTemplates), [&](const TemplateRow& candidate) {
            return candidate.kind == kind &&
                   (!candidate.language || language == candidate.language);
        });
    return row->id;
}

std::optional<DialogTemplate> dialogTemplate(int templateId) {
    const auto row = std::find_if(std::begin(kTemplates), std::end(kTemplates),
                                  [&](const TemplateRow& r) { return r.id == templateId; });
    if (row == std::end(kTemplates)) return std::nullopt;
    DialogTemplate shape =
        row->kind == DialogKind::CompareFiles ? compareFilesLayout() : resultsLayout();
    shape.id = templateId;
    return shape;
}

}  // namespace resources
