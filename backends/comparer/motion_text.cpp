#include "backends/comparer/motion_text.h"

#include <cmath>
#include <numbers>

#include <gp_Quaternion.hxx>
#include <gp_Vec.hxx>

#include "backends/comparer/face_summary.h"

namespace comparer {

void setRotation(const gp_Trsf& motion, Match& match) {
    gp_Vec axis;
    double angle = 0.0;
    motion.GetRotation().GetVectorAndAngle(axis, angle);
    // One turn has two descriptions: the one with less of it.
    if (angle > std::numbers::pi) angle -= 2.0 * std::numbers::pi;
    if (angle < 0.0) {
        angle = -angle;
        axis.Reverse();
    }
    match.rotationDeg = angle * 180.0 / std::numbers::pi;
    match.rotationAxis = {axis.X(), axis.Y(), axis.Z()};
}

std::string motionText(const Match& match) {
    constexpr double kVisible = 5e-4;
    if (match.state != bxtexchange::GeometryState::Moved) return {};
    std::string text;
    const gp_Vec way(match.displacementMm[0], match.displacementMm[1], match.displacementMm[2]);
    if (way.Magnitude() > kVisible) {
        text = "moved " + numberText(way.Magnitude()) + " mm along " + directionText(way);
    }
    if (match.rotationDeg > kVisible) {
        const gp_Vec axis(match.rotationAxis[0], match.rotationAxis[1], match.rotationAxis[2]);
        text += (text.empty() ? "turned " : " and turned ") + numberText(match.rotationDeg) +
                " deg about " + directionText(axis);
    }
    return text;
}

}  // namespace comparer
