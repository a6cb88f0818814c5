#include "workflow/compare_workflow.h"

#include <utility>

#include "platform/ui/services.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "workflow/shared_state.h"

namespace workflow {
namespace {

namespace id = resources::id;

// Error icon, foreground, topmost.
constexpr std::uint32_t kMismatchBoxStyle = 0x50010;

std::wstring quoted(const std::wstring& path) {
    return L"\"" + path + L"\"";
}

}  // namespace

CompareWorkflow::CompareWorkflow(std::wstring pluginName) : pluginName_(std::move(pluginName)) {
    state_.compareJob = std::make_unique<extract::CompareJob>();
}

CompareWorkflow::~CompareWorkflow() {
    Shutdown();
}

void CompareWorkflow::Shutdown() {
    shared().sharedComparer.reset();
    if (state_.resultsDialog) {
        state_.resultsDialog->DestroyWindow();
        state_.resultsDialog.reset();
    }
    state_.compareJob.reset();
}

void CompareWorkflow::onCommand(bxtui::WindowHandle, std::uint32_t commandId,
                                const std::shared_ptr<bxt::IApplication>& application) {
    if (!application) return;
    const auto factory = application->activeFactory();
    if (!factory || !application->activeFrame()) return;
    if (factory->getAs<bxtsg::SCComprae>(bxtsg::code::Compare)) {
        if (state_.resultsDialog && state_.resultsDialog->HasWindow()) {
            state_.resultsDialog->Show();
            state_.resultsDialog->BringToForeground();
        }
        return;
    }
    NoteCommandUse(commandId, application);
    state_.compareJob->sourceFactory = application->activeFactory();
    RunCompare(application);
}

void CompareWorkflow::NoteCommandUse(std::uint32_t commandId,
                                     const std::shared_ptr<bxt::IApplication>& application) const {
    bxt::IStatusManager* const manager = application->statusManager();
    if (!manager) return;
    manager->noteCommand(commandId);
    manager->notePlugin(pluginName_);
}

void CompareWorkflow::ShowPartAssemblyMismatch(
    const std::shared_ptr<bxt::IApplication>& application, const std::wstring& referencePath,
    const std::wstring& comparePath, bool referenceIsAssembly) {
    const std::wstring assembly = resources::text(id::kIsAssembly);
    const std::wstring part = resources::text(id::kIsPart);
    const std::wstring text = quoted(referencePath) + (referenceIsAssembly ? assembly : part) +
                              L"\n" + quoted(comparePath) +
                              (referenceIsAssembly ? part : assembly) + L"\n\n" +
                              resources::text(id::kMismatch);
    if (const auto& toolkit = ui::services().toolkit) {
        toolkit->messageBox(text, resources::text(id::kMismatchCaption), kMismatchBoxStyle);
    }
    application->setStatusText(resources::text(id::kReady));
}

}  // namespace workflow
