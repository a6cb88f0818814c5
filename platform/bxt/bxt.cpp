#include "platform/bxt/application.h"
#include "platform/bxt/compare_outcome.h"
#include "platform/bxt/plugin.h"
#include "platform/bxt/schema.h"

// Destructors live here so that host and plug-in share one copy of every type's identity.

bxtsg::Schema::~Schema() = default;
bxtsg::IFactory::~IFactory() = default;
bxt::IHintTarget::~IHintTarget() = default;
bxt::IFrame::~IFrame() = default;
bxt::IDocument::~IDocument() = default;
bxt::IStatusManager::~IStatusManager() = default;
bxt::IApplication::~IApplication() = default;
bxtui::IWApplication::~IWApplication() = default;
bxt::IView::~IView() = default;
bxt::IEventHandler::~IEventHandler() = default;
bxt::IPlugin::~IPlugin() = default;
bxtui::IGUIPlugin::~IGUIPlugin() = default;
bxtsg::SCCompareOutcome::~SCCompareOutcome() = default;

bool bxt::IEventHandler::Handle(const HPS::Object*) {
    return false;
}

bxtui::Hint::Hint(std::uint16_t code, std::shared_ptr<bxt::IFrame> frame)
    : code_(code), frame_(std::move(frame)), factory_(frame_ ? frame_->factory() : nullptr) {}
