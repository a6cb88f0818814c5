#include "apps/cli/results_window.h"

#include "backends/headless/dialog.h"
#include "platform/bxt/compare_outcome.h"
#include "platform/bxt/resource_loader.h"

namespace cli {
namespace {

// Controls of the results dialog.
constexpr int kSectionList = 1301;
constexpr int kSave = 1302;
constexpr int kCopy = 1303;
constexpr int kPartRadio = 1314;

constexpr std::uint32_t kResultsSavedText = 1165;

}  // namespace

headless::Dialog* ResultsWindow::window() const {
    return toolkit_.windows().empty() ? nullptr : toolkit_.windows().back();
}

void ResultsWindow::openStructure() const {
    if (window()) window()->choose(kSectionList, bxtsg::outcome_section::ProductStructure);
}

void ResultsWindow::openParts() const {
    if (!window()) return;
    window()->choose(kSectionList, bxtsg::outcome_section::Attributes);
    window()->press(kPartRadio);
}

std::optional<std::wstring> ResultsWindow::copy(const headless::Clipboard& clipboard) const {
    if (!window() || !window()->press(kCopy)) return std::nullopt;
    return clipboard.text();
}

bool ResultsWindow::save() const {
    return window() && window()->press(kSave);
}

bool saysThatAReportWasSaved(const std::wstring& statusText) {
    const std::wstring words =
        bxtsgutils::ResourceLoader::getString(L"compareplugin.dll", kResultsSavedText);
    return !words.empty() && statusText.starts_with(words);
}

}  // namespace cli
