#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "backends/occt/exchange/exchange_entity.h"
#include "platform/exchange/a3d.h"
#include "platform/hps/exception.h"
#include "platform/hps/import.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace {

using occt::ExchangeEntity;

constexpr A3DStatus kDone = 0;
constexpr A3DStatus kBadArgument = -1;
constexpr A3DStatus kNotMeasured = -2;
constexpr A3DStatus kNotLoaded = -3;

constexpr std::uint32_t kPollMs = 20;

/// The entity behind a handle if it is one of that kind.
const ExchangeEntity* entity(const void* handle, ExchangeEntity::Kind kind) {
    const auto* const found = static_cast<const ExchangeEntity*>(handle);
    const bool good = found != nullptr && found->mark == ExchangeEntity::kMark &&
                      found->kind == kind && found->unitMm > 0.0;
    return good ? found : nullptr;
}

A3DStatus unicodeToUtf8(const wchar_t* text, std::size_t capacity, char* utf8) {
    if (text == nullptr || utf8 == nullptr) return kBadArgument;
    const std::string bytes = os::toUtf8(text);
    if (bytes.size() + 1 > capacity) return kBadArgument;
    std::memcpy(utf8, bytes.c_str(), bytes.size() + 1);
    return kDone;
}

/// Models that were loaded by path; handles into them stay valid for the life of the process.
std::vector<HPS::Exchange::ImportNotifier>& loadedModels() {
    static auto* const models = new std::vector<HPS::Exchange::ImportNotifier>;
    return *models;
}

A3DStatus loadFromFile(const char* utf8Path, const void** modelFile) {
    if (utf8Path == nullptr || modelFile == nullptr || !os::services().clock) return kBadArgument;
    try {
        const auto options = HPS::Exchange::ImportOptionsKit::GetDefault();
        const auto notifier = HPS::Exchange::File::Import(utf8Path, options);
        float fraction = 0.0F;
        auto status = notifier.Status(fraction);
        while (status == HPS::IOResult::InProgress) {
            os::services().clock->sleepMs(kPollMs);
            status = notifier.Status(fraction);
        }
        const HPS::CADModel model = notifier.GetCADModel();
        if (status != HPS::IOResult::Success || model.Empty()) return kNotLoaded;
        const void* const handle = HPS::Exchange::Component(model).GetExchangeEntity();
        if (handle == nullptr) return kNotLoaded;
        static std::mutex mutex;
        const std::lock_guard lock(mutex);
        loadedModels().push_back(notifier);
        *modelFile = handle;
        return kDone;
    } catch (const std::exception&) {
        return kNotLoaded;
    }
}

A3DStatus modelFileGet(const void* modelFile, A3DAsmModelFileData* data) {
    const ExchangeEntity* const found = entity(modelFile, ExchangeEntity::Kind::ModelFile);
    if (!found || !data || data->structSize != sizeof *data) return kBadArgument;
    data->unit = found->unitMm;
    return kDone;
}

A3DStatus occurrenceGet(const void* occurrence, A3DAsmProductOccurrenceData* data) {
    const ExchangeEntity* const found = entity(occurrence, ExchangeEntity::Kind::Occurrence);
    if (!found || !data || data->structSize != sizeof *data) return kBadArgument;
    data->unit = found->unitMm;
    return kDone;
}

A3DStatus properties(const ExchangeEntity* body, A3DPhysicalPropertiesData* data) {
    if (!body || !data || data->structSize != sizeof *data) return kBadArgument;
    if (!body->measured) return kNotMeasured;
    data->volume = body->volumeMm3 / (body->unitMm * body->unitMm * body->unitMm);
    data->surface = body->areaMm2 / (body->unitMm * body->unitMm);
    return kDone;
}

A3DStatus physicalProperties(const void* item, A3DPhysicalPropertiesData* data) {
    return properties(entity(item, ExchangeEntity::Kind::Body), data);
}

A3DStatus meshProperties(const void* item, A3DPhysicalPropertiesData* data) {
    return properties(entity(item, ExchangeEntity::Kind::MeshBody), data);
}

struct Entry {
    const char* name;
    void* function;
};

template <typename Expected, typename Function>
void* address(Function* function) {
    static_assert(std::is_same_v<Expected, Function*>);
    return reinterpret_cast<void*>(function);
}

}  // namespace

/// The only exported name; everything else is reached through it.
extern "C" __attribute__((visibility("default"))) void* A3DGetProcAddress(const char* name) {
    static const Entry entries[] = {
        {"A3DMiscUnicodeToUTF8", address<A3DMiscUnicodeToUTF8Function>(unicodeToUtf8)},
        {"A3DAsmModelFileLoadFromFile", address<A3DAsmModelFileLoadFromFileFunction>(loadFromFile)},
        {"A3DAsmModelFileGet", address<A3DAsmModelFileGetFunction>(modelFileGet)},
        {"A3DAsmProductOccurrenceGet", address<A3DAsmProductOccurrenceGetFunction>(occurrenceGet)},
        {"A3DComputePhysicalProperties",
         address<A3DComputePhysicalPropertiesFunction>(physicalProperties)},
        {"A3DComputePolyBrepPhysicalProperties",
         address<A3DComputePolyBrepPhysicalPropertiesFunction>(meshProperties)},
    };
    for (const Entry& entry : entries) {
        if (name != nullptr && std::strcmp(entry.name, name) == 0) return entry.function;
    }
    return nullptr;
}
