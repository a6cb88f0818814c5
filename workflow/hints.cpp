#include "workflow/compare_workflow.h"

#include "platform/bxt/file_path.h"
#include "shell/settings/compare_settings.h"
#include "workflow/shared_state.h"

namespace workflow {
namespace {

using bxtsg::IFactory;
namespace code = bxtsg::code;

template <typename Class>
std::shared_ptr<Class> schemaOf(const std::shared_ptr<IFactory>& factory, std::uint16_t wanted) {
    return factory ? factory->getAs<Class>(wanted) : nullptr;
}

void setFrameEnabled(const std::shared_ptr<IFactory>& factory, bool enabled) {
    if (const auto frame = schemaOf<bxt::SCDocFrame>(factory, code::DocFrame)) {
        frame->frameEnabled = enabled;
    }
}

void clearStatusText(const std::shared_ptr<IFactory>& factory) {
    const auto data = schemaOf<bxt::SCApplication>(factory, code::Application);
    if (data && data->application) data->application->setStatusText(L"");
}

void clearViewUpdate(const std::shared_ptr<IFactory>& factory) {
    const auto data = schemaOf<bxt::SCApplication>(factory, code::Application);
    if (data && data->settings) data->settings->viewUpdatePending = false;
}

}  // namespace

void CompareWorkflow::update(const bxtui::Hint* hint) {
    if (!hint) return;
    switch (hint->code()) {
        case 1:
        case 3:
        case 18: HandleActivation(*hint); break;
        case 24:
            state_.activeFactory = hint->factory();
            setFrameEnabled(hint->factory(), false);
            break;
        case 25: HandleFrameHint(*hint); break;
        case 5: HandleClosedDocument(*hint); break;
        case 19: clearStatusText(hint->factory()); break;
        case 21: clearViewUpdate(hint->factory()); break;
        case 27: SaveSwitches(); break;
        default: break;
    }
}

void CompareWorkflow::HandleActivation(const bxtui::Hint& hint) {
    state_.activeFactory = hint.factory();
    if (const auto info = schemaOf<bxtsg::SCInfo>(hint.factory(), code::Info)) {
        state_.activeIs2D = bxt::FileUtils::is2DFile(info->file());
    }
    if (hint.code() != 3) return;
    if (state_.resultPending) {
        state_.resultPending = false;
    } else {
        AdoptPendingRecord(&hint);
    }
}

void CompareWorkflow::HandleFrameHint(const bxtui::Hint& hint) {
    state_.activeFactory = hint.factory();
    const auto frame = schemaOf<bxt::SCDocFrame>(hint.factory(), code::DocFrame);
    if (!frame) return;
    if (state_.resultPending) frame->frameEnabled = false;
    const auto info = schemaOf<bxtsg::SCInfo>(hint.factory(), code::Info);
    const auto record = schemaOf<bxtsg::SCComprae>(hint.factory(), code::Compare);
    if (info && record) info->setFile(bxt::FilePath(record->refFile()).getFName());
}

void CompareWorkflow::HandleClosedDocument(const bxtui::Hint& hint) {
    if (!hint.factory()) return;
    if (hint.factory() == state_.resultFactory) {
        if (state_.resultsDialog) state_.resultsDialog->Hide();
        state_.resultFactory.reset();
    }
    setFrameEnabled(hint.factory(), true);
}

void CompareWorkflow::SaveSwitches() const {
    const auto data = schemaOf<bxt::SCApplication>(state_.activeFactory, code::Application);
    if (data) settings::SaveCompareSettings(data->settings);
}

bool CompareWorkflow::AdoptPendingRecord(const bxtui::Hint* hint) {
    if (!hint || !hint->factory() || !state_.pendingRecord) return false;
    hint->factory()->attach(code::Compare, state_.pendingRecord);
    state_.pendingRecord.reset();
    shared().sharedComparer.reset();
    return true;
}

}  // namespace workflow
