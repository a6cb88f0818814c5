#include "resources/dialog_templates.h"

#include <gtest/gtest.h>

namespace {

using resources::DialogKind;
using resources::dialogTemplate;
using resources::dialogTemplateId;
using ui::ControlKind;

struct Choice {
    const wchar_t* language;
    int compareFiles;
    int results;
};

constexpr Choice kChoices[] = {
    {L"fr", 177, 1355}, {L"de", 175, 1350}, {L"ja", 178, 1351}, {L"ko", 188, 1353},
    {L"zh", 193, 1352}, {L"es", 207, 1354}, {L"pt", 208, 1356}, {L"en", 103, 1300},
    {L"it", 103, 1300}, {L"", 103, 1300},   {L"DE", 103, 1300}, {L"deu", 103, 1300},
};

TEST(DialogTemplates, LanguageChoosesTheTemplate) {
    for (const Choice& row : kChoices) {
        EXPECT_EQ(dialogTemplateId(DialogKind::CompareFiles, row.language), row.compareFiles);
        EXPECT_EQ(dialogTemplateId(DialogKind::Results, row.language), row.results);
    }
}

void expectControl(const ui::ControlTemplate& control, int id, ControlKind kind,
                   const ui::DialogRect& place, const std::wstring& text) {
    EXPECT_EQ(control.id, id);
    EXPECT_EQ(control.kind, kind);
    EXPECT_EQ(control.place.x, place.x);
    EXPECT_EQ(control.place.y, place.y);
    EXPECT_EQ(control.place.width, place.width);
    EXPECT_EQ(control.place.height, place.height);
    EXPECT_EQ(control.text, text);
}

TEST(DialogTemplates, FilePairDialogHasItsFiveControls) {
    for (const int id : {103, 175, 177, 178, 188, 193, 207, 208}) {
        const auto shape = dialogTemplate(id);
        ASSERT_TRUE(shape);
        EXPECT_EQ(shape->id, id);
        EXPECT_EQ(shape->caption, L"Compare Files");
        EXPECT_EQ(shape->font, L"MS Shell Dlg");
        EXPECT_EQ(shape->width, 287);
        EXPECT_EQ(shape->height, 116);
        ASSERT_EQ(shape->controls.size(), 5U);
        expectControl(shape->controls[0], -1, ControlKind::GroupBox, {11, 7, 268, 59},
                      L"Compare following files");
        expectControl(shape->controls[1], 1001, ControlKind::FileEdit, {22, 22, 253, 14}, L"");
        expectControl(shape->controls[2], 1002, ControlKind::FileEdit, {22, 44, 253, 14}, L"");
        expectControl(shape->controls[3], 1015, ControlKind::StaticText, {14, 74, 257, 17}, L"");
        expectControl(shape->controls[4], 1, ControlKind::DefaultButton, {116, 97, 50, 14},
                      L"Compare");
    }
}

const ui::ControlTemplate* controlOf(const ui::DialogTemplate& shape, int id) {
    for (const ui::ControlTemplate& control : shape.controls) {
        if (control.id == id) return &control;
    }
    return nullptr;
}

TEST(DialogTemplates, ResultsDialogHasItsControlsInEveryLanguage) {
    for (const int id : {1300, 1350, 1351, 1352, 1353, 1354, 1355, 1356}) {
        const auto shape = dialogTemplate(id);
        ASSERT_TRUE(shape);
        EXPECT_EQ(shape->id, id);
        EXPECT_EQ(shape->caption, L"Compare");
        EXPECT_EQ(shape->width, 420);
        EXPECT_EQ(shape->height, 260);
        ASSERT_EQ(shape->controls.size(), 22U);
        expectControl(shape->controls[0], 1301, ControlKind::ListBox, {-500, -500, 10, 10}, L"");
        expectControl(shape->controls[1], 1313, ControlKind::RadioButton, {-500, -500, 10, 10},
                      L"");
        expectControl(shape->controls[2], 1314, ControlKind::RadioButton, {-500, -500, 10, 10},
                      L"");
        expectControl(shape->controls[3], 1303, ControlKind::PushButton, {294, 240, 56, 14},
                      L"Copy");
        expectControl(shape->controls[4], 1302, ControlKind::PushButton, {354, 240, 56, 14},
                      L"Save");
        EXPECT_EQ(shape->controls[5].id, 1064);
        EXPECT_EQ(shape->controls[5].text, L"Unchanged");
        EXPECT_FALSE(shape->controls[5].visible);
        EXPECT_EQ(shape->controls[5].place.x, 345);
        EXPECT_EQ(shape->controls[5].place.y, 44);
    }
}

TEST(DialogTemplates, ResultsDialogHasFourPairsOfListsWithLabels) {
    const auto shape = dialogTemplate(1300);
    const std::pair<int, int> pairs[] = {{1305, 1307}, {1309, 1311}, {1315, 1317}, {1319, 1321}};
    for (const auto& [list, label] : pairs) {
        for (const int side : {0, 1}) {
            const int x = side == 0 ? 10 : 215;
            ASSERT_TRUE(controlOf(*shape, list + side) && controlOf(*shape, label + side));
            expectControl(*controlOf(*shape, list + side), list + side, ControlKind::List,
                          {x, 74, 195, 158}, L"");
            expectControl(*controlOf(*shape, label + side), label + side, ControlKind::StaticText,
                          {x, 60, 195, 12}, L"");
        }
    }
    EXPECT_FALSE(controlOf(*shape, 1360));
}

TEST(DialogTemplates, UnknownTemplateIsEmpty) {
    EXPECT_FALSE(dialogTemplate(0));
    EXPECT_FALSE(dialogTemplate(104));
    EXPECT_FALSE(dialogTemplate(1357));
}

}  // namespace
