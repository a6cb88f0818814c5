#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "backends/comparer/carrier.h"
#include "platform/exchange/geometry_result.h"
#include "tests/unit/backends/comparer/fake_model.h"

namespace edits {

enum class Kind {
    HoleMoved,
    RadiusChanged,
    FilletAdded,
    FilletRemoved,
    FaceDrafted,
    BodyAdded,
    PartMoved,
    PartRotated,
    PartMirrored,
    PartScaled,
    InstanceAdded,
    InstanceRemoved,
    ColourOnly,
    NameOnly,
    BelowTolerance,
    InchAgainstMm,
    FacesSplit,
    AsNurbs,
};

constexpr int kKinds = 18;
const char* kindName(Kind kind);

/// Which faces of the edited body differ, by the surfaces that they lie on. Of several faces on one
/// plane it is the largest if the plane is level, else the one nearest to the plane's origin.
struct ChangedFaces {
    bool known = false;  ///< false: the faces are not scored
    bool all = false;
    std::vector<comparer::Carrier> reference;
    std::vector<comparer::Carrier> compare;
};

/// Two models, and what is the truth about them.
struct Edit {
    Kind kind = Kind::HoleMoved;
    std::string base;
    std::shared_ptr<FakeModel> reference;
    std::shared_ptr<FakeModel> compare;
    /// How many instances are not unchanged, by state.
    std::map<bxtexchange::GeometryState, int> states;
    ChangedFaces faces;
    std::optional<double> deviationMm;
    std::optional<double> shiftMm;  ///< of the moved instance
    std::optional<double> turnDeg;
    std::string says;  ///< part of the summary
};

using Random = std::mt19937_64;

/// An edit of that kind. The same numbers come out of the same random state on every machine.
/// Null when the geometry kernel could not make it.
std::optional<Edit> makeEdit(Kind kind, Random& random, const std::string& folder);

}  // namespace edits
