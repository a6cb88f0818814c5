#include "extract/model_volume.h"

#include <cmath>

#include "extract/import_library.h"
#include "extract/model_unit.h"
#include "platform/bxt/unit_utils.h"
#include "platform/hps/component_type.h"

namespace extract {
namespace {

namespace ComponentType = HPS::ComponentType;
using bxtsg::SCInfo;

constexpr A3DStatus kDone = 0;
constexpr double kAccuracy = 0.99;

SCInfo::UNITS displayUnitOf(const CompareJob& job) {
    const auto measure = job.sourceFactory
                             ? job.sourceFactory->getAs<bxtsg::SCMeasure>(bxtsg::code::Measure)
                             : nullptr;
    return measure ? measure->displayUnit() : SCInfo::UNITS::Millimeter;
}

// Volume in the cube of the body's own unit; 0 when the library can't tell.
double measure(const void* entity, bool polygonal) {
    A3DPhysicalPropertiesData data = {sizeof data, kAccuracy, 0.0, 0.0};
    const ImportLibrary& library = importLibrary();
    const A3DStatus status = polygonal ? library.ComputePolyBrepPhysicalProperties(entity, &data)
                                       : library.ComputePhysicalProperties(entity, &data);
    return status == kDone && std::isfinite(data.volume) ? std::abs(data.volume) : 0.0;
}

// Volume in the cube of the display unit.
double bodyVolume(CompareJob& job, const HPS::Exchange::Component& body, bool polygonal,
                  std::wstring& unitName) {
    const void* const entity = body.GetExchangeEntity();
    if (!entity) return 0.0;
    double factor = 0.0;
    std::wstring ownName;
    ModelUnit(job, body, factor, ownName);
    const SCInfo::UNITS displayUnit = displayUnitOf(job);
    SCInfo::UNITS unit = displayUnit;
    double scale = 1.0;
    if (bxtsgutils::UnitUtils::populateUnit(factor, unit)) {
        bxtsgutils::UnitUtils::populateUnitFactor(displayUnit, unit, scale);
    }
    unitName = scale == 1.0 ? ownName : bxtsgutils::InfoUtils::getUnitName(displayUnit);
    return scale * scale * scale * measure(entity, polygonal);
}

}  // namespace

double ComputeModelVolume(CompareJob& job, const HPS::CADModel& model, std::wstring& unitName) {
    double total = 0.0;
    if (model.Empty()) return total;
    for (const HPS::Component& occurrence :
         model.GetAllSubcomponents(ComponentType::ProductOccurrence)) {
        const auto leaves = occurrence.GetAllSubcomponents(ComponentType::ProductOccurrence);
        if (leaves.size() != 1) continue;
        const HPS::Component part = leaves[0];
        auto bodies = part.GetAllSubcomponents(ComponentType::BrepModel);
        const bool polygonal = bodies.empty();
        if (polygonal) bodies = part.GetAllSubcomponents(ComponentType::PolyBrepModel);
        for (const HPS::Component& body : bodies) {
            total += bodyVolume(job, HPS::Exchange::Component(body), polygonal, unitName);
        }
    }
    return total;
}

}  // namespace extract
