#include "backends/comparer/face_summary.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <vector>

#include <gp_Vec.hxx>

namespace comparer {
namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;
/// Parameters and places that print alike are alike.
constexpr double kVisibleMm = 5e-4;
constexpr double kVisibleDeg = 5e-4;
constexpr std::size_t kMostSentences = 8;

std::string changeText(const std::string& what, double from, double to, const char* unit) {
    return what + " " + numberText(from) + " " + unit + " -> " + numberText(to) + " " + unit;
}

/// "along its normal" of one face, "along their normals" of several.
std::string inNumber(std::string text, std::size_t count) {
    const std::string one = "its normal";
    const std::size_t at = text.find(one);
    if (count > 1 && at != std::string::npos) text.replace(at, one.size(), "their normals");
    return text;
}

/// What can be said of a pair; sentences that are alike are counted together.
struct Sentence {
    SurfaceKind kind = SurfaceKind::Other;
    std::string joint;  ///< between the faces and what happened: a colon or nothing
    std::string text;
    std::size_t count = 0;
};

class Describer {
public:
    Describer(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
              const gp_Trsf& placement)
        : reference_(reference), compare_(compare), motion_(motion), placement_(placement) {}

    std::string run(const FaceMatching& matching) {
        for (const FaceChange change :
             {FaceChange::Resized, FaceChange::Moved, FaceChange::Outline}) {
            if (change == FaceChange::Outline) addLonely(matching);
            for (const FacePair& pair : matching.changed) {
                if (pair.change == change) addPair(pair);
            }
        }
        std::string all;
        for (std::size_t i = 0; i < sentences_.size() && i < kMostSentences; ++i) {
            const Sentence& sentence = sentences_[i];
            if (i > 0) all += "; ";
            all += std::to_string(sentence.count) + " " + kindWord(sentence.kind) +
                   (sentence.count == 1 ? " face" : " faces") + sentence.joint +
                   inNumber(sentence.text, sentence.count);
        }
        if (sentences_.size() > kMostSentences) all += "; and more";
        return all;
    }

private:
    void say(SurfaceKind kind, const std::string& joint, const std::string& text) {
        const auto known = std::find_if(sentences_.begin(), sentences_.end(), [&](const auto& s) {
            return s.kind == kind && s.text == text;
        });
        if (known == sentences_.end()) {
            sentences_.push_back({kind, joint, text, 1});
        } else {
            ++known->count;
        }
    }

    void addLonely(const FaceMatching& matching) {
        for (const std::uint32_t p : matching.removed) {
            say(reference_.patches()[p].carrier.kind, " ", "removed");
        }
        for (const std::uint32_t p : matching.added) {
            say(compare_.patches()[p].carrier.kind, " ", "added");
        }
    }

    void addPair(const FacePair& pair) {
        const Patch& before = reference_.patches()[pair.reference];
        const Patch& after = compare_.patches()[pair.compare];
        const SurfaceKind kind = after.carrier.kind;
        switch (pair.change) {
            case FaceChange::Outline: say(kind, " ", "with another outline"); return;
            case FaceChange::Moved:
                say(kind, " ",
                    kind == SurfaceKind::Plane ? planeText(before, after)
                                               : shiftText(before, after));
                return;
            case FaceChange::Resized: say(kind, ": ", sizeText(before, after)); return;
        }
    }

    std::string sizeText(const Patch& before, const Patch& after) const {
        const Carrier& a = before.carrier;
        const Carrier& b = after.carrier;
        std::string text;
        const auto add = [&](const std::string& part) {
            text += (text.empty() ? "" : ", ") + part;
        };
        const bool tube = a.kind == SurfaceKind::Torus;
        if (std::abs(a.radiusMm - b.radiusMm) > kVisibleMm) {
            add(changeText(tube ? "ring radius" : "radius", a.radiusMm, b.radiusMm, "mm"));
        }
        if (std::abs(a.minorMm - b.minorMm) > kVisibleMm) {
            add(changeText("radius", a.minorMm, b.minorMm, "mm"));
        }
        if (std::abs(a.halfAngle - b.halfAngle) * kDegrees > kVisibleDeg) {
            add(changeText("half angle", a.halfAngle * kDegrees, b.halfAngle * kDegrees, "deg"));
        }
        if (text.empty()) add(changeText("area", before.areaMm2, after.areaMm2, "mm2"));
        return text;
    }

    std::string planeText(const Patch& before, const Patch& after) const {
        if (after.samples.empty()) return "moved";
        const gp_Vec normal(after.samples.front().at.normal);
        const gp_Vec was(before.carrier.axis.Transformed(motion_));
        const double turn = std::asin(std::min(1.0, was.Crossed(normal).Magnitude())) * kDegrees;
        if (turn > kVisibleDeg) return "turned by " + numberText(turn) + " deg";
        const gp_Vec way(before.centre.Transformed(motion_), after.centre);
        const double along = way.Dot(normal);
        if (std::abs(along) <= kVisibleMm) return shiftText(before, after);
        return "moved " + numberText(std::abs(along)) +
               (along > 0.0 ? " mm along its normal" : " mm against its normal");
    }

    std::string shiftText(const Patch& before, const Patch& after) const {
        gp_Vec way(before.centre.Transformed(motion_), after.centre);
        if (way.Magnitude() <= kVisibleMm) return "turned";
        way.Transform(placement_);
        return "moved " + numberText(way.Magnitude()) + " mm along " + directionText(way);
    }

    const FaceSet& reference_;
    const FaceSet& compare_;
    gp_Trsf motion_;
    gp_Trsf placement_;
    std::vector<Sentence> sentences_;
};

}  // namespace

std::string numberText(double value) {
    std::array<char, 64> buffer;
    if (std::abs(value) < kVisibleMm) value = 0.0;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, 3);
    if (end.ec != std::errc()) return "?";
    std::string text(buffer.data(), end.ptr);
    while (text.ends_with('0') && !text.ends_with(".0")) text.pop_back();
    return text;
}

std::string directionText(const gp_Vec& way) {
    constexpr double kStraight = 1e-4;
    const double length = way.Magnitude();
    if (!(length > 0.0)) return "nowhere";
    const gp_Vec unit = way / length;
    for (int axis = 1; axis <= 3; ++axis) {
        if (std::abs(std::abs(unit.Coord(axis)) - 1.0) > kStraight * kStraight / 2.0) continue;
        return std::string(unit.Coord(axis) > 0.0 ? "+" : "-") + "XYZ"[axis - 1];
    }
    return "(" + numberText(unit.X()) + ", " + numberText(unit.Y()) + ", " + numberText(unit.Z()) +
           ")";
}

std::string describeChanges(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
                            const FaceMatching& matching, const gp_Trsf& placement) {
    return Describer(reference, compare, motion, placement).run(matching);
}

}  // namespace comparer
