#include "tests/edits/score.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <GProp_GProps.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include "backends/comparer/body_classes.h"
#include "backends/comparer/face_report.h"

namespace edits {
namespace {

using bxtexchange::GeometryState;
using comparer::Carrier;
using comparer::SurfaceKind;
using FaceNumbers = std::set<std::uint32_t>;

struct Outcome {
    comparer::Names names;
    comparer::Side reference;
    comparer::Side compare;
    std::vector<comparer::Match> matches;
    comparer::FaceReport faces;
};

void compareModels(const Edit& edit, Outcome& outcome) {
    const comparer::Tolerances tolerances;
    outcome.reference = comparer::collectSide(*edit.reference, outcome.names);
    outcome.compare = comparer::collectSide(*edit.compare, outcome.names);
    comparer::BodyClasses classes(outcome.reference, outcome.compare, tolerances);
    outcome.matches = comparer::matchInstances(outcome.reference, outcome.compare, outcome.names,
                                               classes, tolerances, [](double) {});
    outcome.faces = comparer::compareFaces(outcome.reference, outcome.compare, tolerances,
                                           outcome.matches, [](double) {});
}

/// All points of a face are on the surface, not only near it: edits are as small as 0.05 mm.
bool liesOn(const TopoDS_Face& face, const Carrier& carrier) {
    constexpr double kOnMm = 1e-5;
    double u0 = 0.0, u1 = 0.0, v0 = 0.0, v1 = 0.0;
    BRepTools::UVBounds(face, u0, u1, v0, v1);
    const BRepAdaptor_Surface surface(face);
    for (int i = 0; i < 16; ++i) {
        const gp_Pnt point = surface.Value(u0 + (u1 - u0) * (i % 4 + 0.5) / 4.0,
                                           v0 + (v1 - v0) * (i / 4 + 0.5) / 4.0);
        if (carrier.distanceMm(point) > kOnMm) return false;
    }
    return true;
}

/// How much a face is the one that a plane stands for, among those on it.
double claimOf(const TopoDS_Face& face, const Carrier& plane) {
    GProp_GProps measured;
    BRepGProp::SurfaceProperties(face, measured);
    const bool level = std::abs(plane.axis.Z()) > 0.999;
    return level ? measured.Mass() : 1.0 / (1.0 + measured.CentreOfMass().Distance(plane.origin));
}

FaceNumbers truthOf(const TopoDS_Shape& shape, const std::vector<Carrier>& changed, bool all) {
    FaceNumbers truth;
    std::vector<std::pair<double, std::int64_t>> best(changed.size(), {0.0, -1});
    std::uint32_t number = 0;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next(), ++number) {
        const TopoDS_Face& face = TopoDS::Face(it.Current());
        if (all) truth.insert(number);
        for (std::size_t i = 0; i < changed.size(); ++i) {
            if (!liesOn(face, changed[i])) continue;
            if (changed[i].kind != SurfaceKind::Plane) {
                truth.insert(number);
            } else {
                best[i] = std::max(best[i], {claimOf(face, changed[i]), number});
            }
        }
    }
    for (const auto& [claim, face] : best) {
        if (face >= 0) truth.insert(static_cast<std::uint32_t>(face));
    }
    return truth;
}

void countFaces(const FaceNumbers& truth, const std::vector<std::uint32_t>& called, Score& score,
                const std::string& side) {
    for (const std::uint32_t face : called) {
        if (truth.contains(face)) {
            ++score.found;
        } else {
            ++score.wrong;
            score.complaint += " wrong " + side + " " + std::to_string(face);
        }
    }
    for (const std::uint32_t face : truth) {
        if (std::find(called.begin(), called.end(), face) != called.end()) continue;
        ++score.missed;
        score.complaint += " missed " + side + " " + std::to_string(face);
    }
}

void scoreFaces(const Edit& edit, const Outcome& outcome, Score& score) {
    if (!edit.faces.known) return;
    const bool expected = edit.faces.all || !edit.faces.reference.empty();
    // The edited part stands first on both sides.
    comparer::BodyDifference none;
    const comparer::BodyDifference* difference =
        outcome.faces.bodies.empty() ? &none : &outcome.faces.bodies.front();
    FaceNumbers reference;
    FaceNumbers compare;
    if (expected) {
        const auto& before = outcome.reference.bodies[outcome.reference.instances[0].body].shape;
        const auto& after = outcome.compare.bodies[outcome.compare.instances[0].body].shape;
        reference = truthOf(before, edit.faces.reference, edit.faces.all);
        compare = truthOf(after, edit.faces.compare, edit.faces.all);
    }
    countFaces(reference, difference->referenceFaces, score, "reference");
    countFaces(compare, difference->compareFaces, score, "compare");
}

void scoreVerdict(const Edit& edit, const Outcome& outcome, Score& score) {
    std::map<GeometryState, int> states;
    score.verdictRight = true;
    for (const comparer::Match& match : outcome.matches) {
        if (match.state != GeometryState::Unchanged) ++states[match.state];
        if (match.state != GeometryState::Moved) continue;
        const double shift =
            std::hypot(match.displacementMm[0], match.displacementMm[1], match.displacementMm[2]);
        const bool right = (!edit.shiftMm || std::abs(shift - *edit.shiftMm) < 1e-3) &&
                           (!edit.turnDeg || std::abs(match.rotationDeg - *edit.turnDeg) < 1e-3);
        score.verdictRight = score.verdictRight && right;
    }
    score.verdictRight = score.verdictRight && states == edit.states;
    if (score.verdictRight) return;
    score.complaint += " states";
    for (const auto& [state, count] : states) {
        score.complaint +=
            " " + std::to_string(static_cast<int>(state)) + ":" + std::to_string(count);
    }
}

}  // namespace

Score score(const Edit& edit) {
    Score score;
    Outcome outcome;
    compareModels(edit, outcome);
    scoreVerdict(edit, outcome, score);
    scoreFaces(edit, outcome, score);
    const bool has = !outcome.faces.bodies.empty();
    if (edit.deviationMm) {
        const double mm = has ? outcome.faces.bodies[0].numbers.largestDeviationMm : 0.0;
        const comparer::Tolerances tolerances;
        score.deviationRight =
            std::abs(mm - *edit.deviationMm) <= 0.01 * *edit.deviationMm + tolerances.lengthMm;
        if (!score.deviationRight) {
            score.complaint += " deviation " + std::to_string(mm) + " instead of " +
                               std::to_string(*edit.deviationMm);
        }
    }
    if (!edit.says.empty()) {
        std::string said;
        for (const std::string& summary : outcome.faces.summaries) said += summary;
        score.sentenceRight = said.find(edit.says) != std::string::npos;
        if (!score.sentenceRight) score.complaint += " says '" + said + "'";
    }
    return score;
}

void Tally::add(const Edit& edit, const Score& score) {
    ++edits;
    verdictsRight += score.verdictRight;
    deviations += edit.deviationMm.has_value();
    deviationsRight += edit.deviationMm.has_value() && score.deviationRight;
    sentences += !edit.says.empty();
    sentencesRight += !edit.says.empty() && score.sentenceRight;
    found += score.found;
    missed += score.missed;
    wrong += score.wrong;
}

void Tally::add(const Tally& other) {
    edits += other.edits;
    verdictsRight += other.verdictsRight;
    deviations += other.deviations;
    deviationsRight += other.deviationsRight;
    sentences += other.sentences;
    sentencesRight += other.sentencesRight;
    found += other.found;
    missed += other.missed;
    wrong += other.wrong;
}

double Tally::precision() const {
    const std::size_t called = found + wrong;
    return called == 0 ? 1.0 : static_cast<double>(found) / static_cast<double>(called);
}

double Tally::recall() const {
    const std::size_t changed = found + missed;
    return changed == 0 ? 1.0 : static_cast<double>(found) / static_cast<double>(changed);
}

bool Tally::allRight() const {
    constexpr double kBar = 0.99;
    return verdictsRight == edits && deviationsRight == deviations && precision() >= kBar &&
           recall() >= kBar;
}

std::string table(const std::vector<Tally>& kinds) {
    std::string text =
        "kind                edits verdict deviation sentence  found missed wrong "
        "precision recall\n";
    Tally all;
    const auto line = [&](const char* name, const Tally& t) {
        char buffer[160];
        std::snprintf(buffer, sizeof buffer,
                      "%-19s %5zu %7zu %5zu/%-3zu %4zu/%-3zu %6zu %6zu %5zu %9.4f %6.4f\n", name,
                      t.edits, t.verdictsRight, t.deviationsRight, t.deviations, t.sentencesRight,
                      t.sentences, t.found, t.missed, t.wrong, t.precision(), t.recall());
        text += buffer;
    };
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        line(kindName(static_cast<Kind>(i)), kinds[i]);
        all.add(kinds[i]);
    }
    line("all", all);
    return text;
}

}  // namespace edits
