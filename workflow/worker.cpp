#include "workflow/compare_workflow.h"

#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "platform/bxt/file_path.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"
#include "workflow/shared_state.h"

namespace workflow {
namespace {

using Status = bxtimp::IDocComparer::Status;
using bxtimp::IDocComparer;

constexpr int kEndOfProgress = 101;
constexpr const wchar_t* kLanguageFolder = L"..\\..\\Lang";

/// Makes an effect of the worker seen, unless the run was killed. Without a token the caller is
/// no worker that could be killed.
bool publish(const std::function<void()>& effect) {
    const auto& workers = os::services().workers;
    if (os::RunToken* token = workers ? workers->current() : nullptr) return token->publish(effect);
    effect();
    return true;
}

/// The comparer of this run. False when the run was killed meanwhile.
bool ensureComparer() {
    if (shared().sharedComparer) return true;
    auto comparer = std::make_unique<bxtexchange::HOOPSDOCComparer>(
        bxt::FileUtils::getProcessPath() + kLanguageFolder);
    return publish([&] { shared().sharedComparer = std::move(comparer); });
}

void compare() {
    SharedState& state = shared();
    if (!publish([&] { state.sharedStatus = IDocComparer::NothingCompared; })) return;
    const auto application =
        std::dynamic_pointer_cast<bxtui::IWApplication>(state.sharedApplication);
    const auto factory = application ? application->factory() : nullptr;
    if (!ensureComparer()) return;
    const bool complete = !state.sharedReferencePath.empty() && !state.sharedComparePath.empty() &&
                          state.sharedStatusManager;
    if (!complete) return;
    // The comparer writes to locals: a kill between its two results must not leave one of them
    // beside an older run's other.
    Status status = IDocComparer::NothingCompared;
    std::wstring path = state.sharedComparer->doComparision(
        factory, state.sharedReferencePath.c_str(), state.sharedComparePath.c_str(),
        state.sharedStatusManager, status);
    publish([&] {
        state.sharedStatus = status;
        state.sharedResultPath = std::move(path);
    });
}

}  // namespace

std::uint32_t CompareWorkflow::CompareWorker() {
    try {
        compare();
    } catch (const std::exception& error) {
        const std::wstring text = os::toWide(error.what());
        publish([&] { os::debugOutput(text); });
    }
    publish([] {
        if (const auto& application = shared().sharedApplication) {
            application->setProgress(kEndOfProgress);
        }
    });
    return 0;
}

}  // namespace workflow
