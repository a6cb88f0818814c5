#include "apps/cli/console_user.h"

#include "apps/cli/interrupt.h"
#include "apps/cli/text.h"
#include "backends/headless/dialog.h"
#include "platform/os/utf8.h"

namespace cli {
namespace {

// Controls of the file prompt.
constexpr int kReferenceEdit = 1001;
constexpr int kCompareEdit = 1002;
constexpr int kMessage = 1015;
constexpr int kCompareButton = 1;

constexpr int kOkPressed = 1;

}  // namespace

void ConsoleUser::answerDialog(headless::Dialog& dialog) {
    // The host asks again after a part met an assembly, and the answer would be the same.
    if (asked_) return;
    asked_ = true;
    dialog.type(kReferenceEdit, os::toWide(files_.reference));
    dialog.type(kCompareEdit, os::toWide(files_.compare));
    const bool pressed = dialog.press(kCompareButton);
    if (!dialog.open()) return;
    if (!pressed) {
        readOut(L"both files must be named");
    } else {
        readOut(dialog.text(kMessage));
    }
}

int ConsoleUser::answerMessageBox(const headless::MessageBox& box) {
    readOut(box.text);
    return kOkPressed;
}

std::optional<std::wstring> ConsoleUser::answerSaveFile(const ui::SaveFileOptions&) {
    if (files_.report.empty()) return std::nullopt;
    return os::toWide(files_.report);
}

bool ConsoleUser::cancelsProgress() {
    return interrupted() != 0;
}

void ConsoleUser::seeStatusText(const std::wstring& text) {
    if (text.empty()) return;
    lastStatusText_ = text;
    if (!showStatus_) return;
    const std::string shown = names_.withGivenNames(os::toUtf8(text));
    console_.line("status: " + printable(std::string_view(shown)));
}

void ConsoleUser::readOut(const std::wstring& text) {
    gaveReason_ = true;
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t end = std::min(text.find(L'\n', from), text.size());
        const std::string line = names_.withGivenNames(os::toUtf8(text.substr(from, end - from)));
        if (!line.empty()) console_.line("bextora: " + printable(std::string_view(line)));
        from = end + 1;
    }
}

}  // namespace cli
