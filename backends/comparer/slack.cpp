#include "backends/comparer/slack.h"

#include <algorithm>

#include <BRep_Tool.hxx>

namespace comparer {

double slackOf(const TopoDS_Edge& edge) {
    constexpr double kAccurateMm = 1e-4;
    const double offMm = BRep_Tool::Tolerance(edge);
    return offMm > kAccurateMm ? offMm : 0.0;
}

double withSlack(double toleranceMm, double slackMm) {
    constexpr double kFlatAngle = 2.0;
    return std::max(toleranceMm, std::min(kFlatAngle * slackMm, kMostSlackMm));
}

}  // namespace comparer
