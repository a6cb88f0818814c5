#include "workflow/model_import.h"

#include <exception>
#include <string>

#include "platform/os/services.h"
#include "platform/os/utf8.h"
#include "workflow/import_settings.h"

namespace workflow {
namespace {

using HPS::Exchange::ImportNotifier;
using HPS::Exchange::ImportOptionsKit;

constexpr std::uint32_t kPollIntervalMs = 500;

bool exists(const std::wstring& path) {
    const auto& files = os::services().files;
    return files && files->exists(path);
}

HPS::IOResult statusOf(const ImportNotifier& notifier) {
    float fraction = 0.0F;
    return notifier.Status(fraction);
}

bool failed(HPS::IOResult status) {
    switch (status) {
        case HPS::IOResult::Canceled:
        case HPS::IOResult::TimedOut:
        case HPS::IOResult::FileNotFound:
        case HPS::IOResult::Failure: return true;
        default: return false;
    }
}

void startImports(extract::CompareJob& job) {
    ImportOptionsKit compareKit = ImportOptionsKit::GetDefault();
    ImportOptionsKit referenceKit = compareKit;
    ApplyImportSettings(job, compareKit);
    ApplyImportSettings(job, referenceKit);
    const std::string comparePath = os::toUtf8(job.comparePath);
    const std::string referencePath = os::toUtf8(job.referencePath);
    job.compareNotifier = HPS::Exchange::File::Import(comparePath.c_str(), compareKit);
    job.referenceNotifier = HPS::Exchange::File::Import(referencePath.c_str(), referenceKit);
}

bool waitForImports(const extract::CompareJob& job, os::Clock& clock) {
    for (;;) {
        clock.sleepMs(kPollIntervalMs);
        const HPS::IOResult compare = statusOf(job.compareNotifier);
        const HPS::IOResult reference = statusOf(job.referenceNotifier);
        if (failed(compare) || failed(reference)) return false;
        if (compare == HPS::IOResult::Success && reference == HPS::IOResult::Success) return true;
    }
}

}  // namespace

bool ImportModels(extract::CompareJob& job) {
    if (!exists(job.comparePath) || !exists(job.referencePath)) return false;
    const auto& clock = os::services().clock;
    if (!clock) return false;
    try {
        startImports(job);
        if (!waitForImports(job, *clock)) return false;
        const HPS::CADModel compareModel = job.compareNotifier.GetCADModel();
        const HPS::CADModel referenceModel = job.referenceNotifier.GetCADModel();
        return !compareModel.Empty() && !referenceModel.Empty();
    } catch (const std::exception& error) {
        os::debugOutput(os::toWide(error.what()));
        return false;
    }
}

}  // namespace workflow
