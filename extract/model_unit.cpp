#include "extract/model_unit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

#include "extract/import_library.h"
#include "extract/naming.h"
#include "platform/hps/component_type.h"

namespace extract {
namespace {

constexpr A3DStatus kDone = 0;

struct LengthUnit {
    std::wstring_view name;  ///< in the "Units" metadata; empty for the exchange library's
    double lengthMm;         ///< by the exchange library; 0: it never says so
    double toleranceMm;
    const wchar_t* shortName;
    double factor;  ///< length in metres
};

constexpr double kExact = std::numeric_limits<double>::epsilon();
constexpr double kRounded = 0.001;

// No length stands for yards, and the mile is as short as most files have it.
constexpr LengthUnit kUnits[] = {
    {L"Millimeter", 1.0, kExact, L"mm", 0.001},   {L"Centimeter", 10.0, kExact, L"cm", 0.01},
    {L"Meter", 1000.0, kExact, L"m", 1.0},        {L"Kilometer", 1000000.0, kExact, L"Km", 1000.0},
    {L"Foot", 304.8, kRounded, L"ft", 0.3048},    {L"Inch", 25.4, kRounded, L"in", 0.0254},
    {L"Mile", 1609344.0, kExact, L"mi", 1609.34}, {L"Yard", 0.0, 0.0, L"yd", 0.9144},
};
constexpr LengthUnit kMetre = kUnits[2];

LengthUnit unitOfName(std::wstring_view name) {
    for (const LengthUnit& unit : kUnits) {
        if (unit.name == name) return unit;
    }
    return kMetre;
}

LengthUnit unitOfLength(double lengthMm) {
    for (const LengthUnit& unit : kUnits) {
        if (std::abs(lengthMm - unit.lengthMm) < unit.toleranceMm) return unit;
    }
    return kMetre;
}

std::wstring unitsMetadata(const HPS::Component& occurrence) {
    if (occurrence.Empty()) return {};
    const HPS::StringMetadata units(occurrence.GetMetadata("Units"));
    return units.Empty() ? std::wstring() : ReadText(units.GetValue());
}

double occurrenceUnitMm(const HPS::Component& component) {
    if (component.Empty()) return 0.0;
    A3DAsmProductOccurrenceData data = {sizeof data, 0.0};
    const void* const entity = HPS::Exchange::Component(component).GetExchangeEntity();
    if (!entity || importLibrary().AsmProductOccurrenceGet(entity, &data) != kDone) return 0.0;
    return data.unit;
}

double fileUnitMm(const std::wstring& path) {
    // A path takes up to four bytes per character; one that fits nobody's limits is still tried.
    constexpr std::size_t kUsualCapacity = 1040;
    std::vector<char> utf8(std::max(kUsualCapacity, 4 * path.size() + 1));
    const ImportLibrary& library = importLibrary();
    const void* file = nullptr;
    A3DAsmModelFileData data = {sizeof data, 0.0};
    if (library.MiscUnicodeToUTF8(path.c_str(), utf8.size(), utf8.data()) != kDone ||
        library.AsmModelFileLoadFromFile(utf8.data(), &file) != kDone ||
        library.AsmModelFileGet(file, &data) != kDone) {
        return 0.0;
    }
    return data.unit;
}

}  // namespace

HPS::Component FindOwningOccurrence(const HPS::Component& component) {
    HPS::Component above = component;
    while (!above.Empty() && above.GetComponentType() != HPS::ComponentType::ProductOccurrence) {
        const HPS::ComponentArray owners = above.GetOwners();
        above = owners.empty() ? HPS::Component() : owners[0];
    }
    return above;
}

double ProductOccurrenceUnit(CompareJob& job, const HPS::Component& component) {
    const double unitMm = occurrenceUnitMm(component);
    if (unitMm != 0.0) return unitMm;
    if (job.modelUnitCache < 0.0) {
        if (!job.sourceFactory) return 0.0;
        const auto info = job.sourceFactory->getAs<bxtsg::SCInfo>(bxtsg::code::Info);
        if (!info) return 0.0;
        job.modelUnitCache = fileUnitMm(info->file());
    }
    return job.modelUnitCache;
}

void ModelUnit(CompareJob& job, const HPS::Component& component, double& factor,
               std::wstring& shortName) {
    const HPS::Component occurrence = FindOwningOccurrence(component);
    const std::wstring name = unitsMetadata(occurrence);
    const bool named = !name.empty() && name != L"Unknown";
    const LengthUnit unit =
        named ? unitOfName(name) : unitOfLength(ProductOccurrenceUnit(job, occurrence));
    factor = unit.factor;
    shortName = unit.shortName;
}

}  // namespace extract
