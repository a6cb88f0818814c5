#include "platform/bxt/analytics.h"

#include "platform/bxt/services.h"

void bxt::Analytics::addCommandEvent(const std::wstring& category, const std::wstring& action) {
    if (const auto& count = services().commandEvent) count(category, action);
}
