#include "tests/edits/edits.h"

#include <cmath>
#include <numbers>

#include <BRepAdaptor_Curve.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepGProp.hxx>
#include <BRepOffsetAPI_DraftAngle.hxx>
#include <GProp_GProps.hxx>
#include <ShapeUpgrade_ShapeDivideAngle.hxx>
#include <ShapeUpgrade_ShapeDivideArea.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_Pln.hxx>

#include "tests/edits/base_parts.h"
#include "tests/edits/step_files.h"

namespace edits {
namespace {

using bxtexchange::GeometryState;
using comparer::Carrier;
using comparer::SurfaceKind;

/// Not the library's distributions: those differ between libraries.
double between(Random& random, double low, double high) {
    return low + (high - low) * static_cast<double>(random() >> 11U) * 0x1.0p-53;
}

std::size_t oneOf(Random& random, std::size_t count) {
    return static_cast<std::size_t>(random() % count);
}

Part randomPart(Random& random) {
    const double scale = between(random, 0.6, 2.0);
    const auto parts = baseParts(scale, between(random, 6.0, 20.0));
    return parts[oneOf(random, parts.size())];
}

gp_Trsf shifted(double x, double y, double z) {
    gp_Trsf motion;
    motion.SetTranslation(gp_Vec(x, y, z));
    return motion;
}

gp_Dir anyDirection(Random& random) {
    const double z = between(random, -1.0, 1.0);
    const double turn = between(random, 0.0, 2.0 * std::numbers::pi);
    const double r = std::sqrt(1.0 - z * z);
    return {r * std::cos(turn), r * std::sin(turn), z};
}

/// Something that a part stands in; nothing in it is edited.
struct Surroundings {
    std::vector<std::pair<Part, gp_Trsf>> parts;
    bool nested = false;
    gp_Trsf place;  ///< of the edited part
};

Surroundings randomAssembly(Random& random) {
    Surroundings assembly;
    const std::size_t shape = oneOf(random, 3);
    assembly.nested = shape == 1;
    const std::size_t others = 3 + oneOf(random, 4);
    const Part repeated = randomPart(random);
    for (std::size_t i = 0; i < others; ++i) {
        gp_Trsf place;
        place.SetRotation(gp_Ax1(gp::Origin(), anyDirection(random)), between(random, 0.1, 3.0));
        place.SetTranslationPart(gp_Vec(400.0 * static_cast<double>(i + 1), 0.0, 50.0));
        assembly.parts.emplace_back(shape == 2 ? repeated : randomPart(random), place);
    }
    assembly.place = shifted(0.0, 300.0, 20.0);
    return assembly;
}

class Models {
public:
    explicit Models(const Surroundings* around) : around_(around) {
        if (around == nullptr) return;
        for (const auto& [part, place] : around->parts) shapes_.push_back(part.build());
    }

    /// The part under test stands first; `extra` last, where it is given.
    std::shared_ptr<FakeModel> make(const TopoDS_Shape& shape, const std::string& name,
                                    const gp_Trsf& motion = gp_Trsf(),
                                    const TopoDS_Shape& extra = {}) const {
        auto model = std::make_shared<FakeModel>(around_ == nullptr ? name : "Machine");
        if (around_ == nullptr) {
            model->body(model->top(), shape);
            return model;
        }
        FakeModel::Id parent = model->top();
        if (around_->nested) parent = model->occurrence(parent, "Group", shifted(10, 20, 30));
        model->part(parent, name, shape, motion * around_->place);
        for (std::size_t i = 0; i < shapes_.size(); ++i) {
            model->part(parent, around_->parts[i].first.name + " in place", shapes_[i],
                        around_->parts[i].second);
        }
        if (!extra.IsNull()) model->part(parent, "Extra", extra, shifted(0.0, -400.0, 0.0));
        return model;
    }

    const TopoDS_Shape& other(std::size_t number) const { return shapes_[number]; }

private:
    const Surroundings* around_;
    std::vector<TopoDS_Shape> shapes_;
};

/// The part alone, or in an assembly.
void place(Edit& edit, Random& random, const TopoDS_Shape& before, const TopoDS_Shape& after) {
    if (oneOf(random, 2) == 0) {
        const Models alone(nullptr);
        edit.reference = alone.make(before, edit.base);
        edit.compare = alone.make(after, edit.base);
        return;
    }
    const Surroundings assembly = randomAssembly(random);
    const Models models(&assembly);
    edit.reference = models.make(before, edit.base);
    edit.compare = models.make(after, edit.base);
}

void editHole(Edit& edit, Random& random) {
    const Part before = randomPart(random);
    Part after = before;
    Hole& hole = after.holes[oneOf(random, after.holes.size())];
    const Hole was = hole;
    if (edit.kind == Kind::RadiusChanged) {
        const double byMm = between(random, 0.02, 0.8) * (oneOf(random, 2) == 0 ? 1.0 : -1.0);
        hole.radiusMm += byMm;
        edit.deviationMm = std::abs(byMm);
        edit.says = "radius";
    } else {
        const double byMm = edit.kind == Kind::HoleMoved ? 0.05 : 0.0005;
        const double turn = between(random, 0.0, 2.0 * std::numbers::pi);
        hole.x += byMm * std::cos(turn);
        hole.y += byMm * std::sin(turn);
        if (edit.kind == Kind::HoleMoved) edit.deviationMm = byMm;
        edit.says = "moved 0.05 mm";
    }
    edit.base = before.name;
    edit.faces.known = true;
    if (edit.kind == Kind::BelowTolerance) {
        edit.says.clear();
    } else {
        edit.states[GeometryState::Changed] = 1;
        edit.faces.reference = {before.top(), before.bottom(), before.wall(was)};
        edit.faces.compare = {after.top(), after.bottom(), after.wall(hole)};
    }
    place(edit, random, before.build(), after.build());
}

std::optional<TopoDS_Edge> uprightEdge(const TopoDS_Shape& shape, const gp_Pnt2d& at) {
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (Standard_Integer i = 1; i <= edges.Extent(); ++i) {
        const BRepAdaptor_Curve curve(TopoDS::Edge(edges(i)));
        if (curve.GetType() != GeomAbs_Line) continue;
        const gp_Pnt a = curve.Value(curve.FirstParameter());
        const gp_Pnt b = curve.Value(curve.LastParameter());
        const bool here = gp_Pnt2d(a.X(), a.Y()).Distance(at) < 1e-6 &&
                          gp_Pnt2d(b.X(), b.Y()).Distance(at) < 1e-6;
        if (here) return TopoDS::Edge(edges(i));
    }
    return std::nullopt;
}

bool editFillet(Edit& edit, Random& random) {
    const Part part = randomPart(random);
    std::size_t corner = oneOf(random, part.corners.size());
    while (part.angleAt(corner) > 0.9 * std::numbers::pi)
        corner = (corner + 1) % part.corners.size();
    const double angle = part.angleAt(corner);
    const double radiusMm = between(random, 0.5, 3.0);
    const TopoDS_Shape sharp = part.build();
    const auto edge = uprightEdge(sharp, part.corners[corner]);
    if (!edge) return false;
    BRepFilletAPI_MakeFillet fillet(sharp);
    fillet.Add(radiusMm, *edge);
    fillet.Build();
    if (!fillet.IsDone()) return false;
    const TopoDS_Shape round = TopExp_Explorer(fillet.Shape(), TopAbs_SOLID).Current();

    const double depth = radiusMm / std::sin(angle / 2.0);
    const std::size_t count = part.corners.size();
    const gp_Pnt2d& here = part.corners[corner];
    gp_Vec2d in(here, part.corners[(corner + count - 1) % count]);
    gp_Vec2d out(here, part.corners[(corner + 1) % count]);
    const gp_Vec2d middle = (in.Normalized() + out.Normalized()).Normalized();
    const gp_Pnt2d centre = here.Translated(middle * depth);
    const Carrier corner3d = part.wall({centre.X(), centre.Y(), radiusMm});
    const std::vector<Carrier> both = {part.top(), part.bottom(), part.side(corner),
                                       part.side((corner + count - 1) % count)};
    edit.base = part.name;
    edit.states[GeometryState::Changed] = 1;
    edit.faces = {true, false, both, both};
    edit.deviationMm = depth - radiusMm;
    const bool added = edit.kind == Kind::FilletAdded;
    (added ? edit.faces.compare : edit.faces.reference).push_back(corner3d);
    edit.says = added ? "1 cylindrical face added" : "1 cylindrical face removed";
    place(edit, random, added ? sharp : round, added ? round : sharp);
    return true;
}

double volumeOf(const TopoDS_Shape& shape) {
    GProp_GProps measured;
    BRepGProp::VolumeProperties(shape, measured);
    return measured.Mass();
}

/// A side between two right-angled convex corners, so that the largest deviation is known.
std::optional<std::size_t> squareSide(const Part& part, Random& random) {
    const std::size_t count = part.corners.size();
    const std::size_t start = oneOf(random, count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t side = (start + i) % count;
        const auto square = [&](std::size_t corner) {
            return std::abs(part.angleAt(corner % count) - std::numbers::pi / 2.0) < 1e-9;
        };
        if (square(side) && square(side + 1)) return side;
    }
    return std::nullopt;
}

/// Of the faces on a side's plane, the one that is the side.
TopoDS_Face faceOf(const TopoDS_Shape& shape, const Carrier& side) {
    TopoDS_Face best;
    double least = 0.0;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        const TopoDS_Face& face = TopoDS::Face(it.Current());
        const auto carrier = comparer::elementaryCarrier(BRepAdaptor_Surface(face));
        if (!carrier || carrier->kind != SurfaceKind::Plane) continue;
        if (std::abs(carrier->axis.Dot(side.axis)) < 1.0 - 1e-12) continue;
        if (side.distanceMm(carrier->origin) > 1e-9) continue;
        GProp_GProps measured;
        BRepGProp::SurfaceProperties(face, measured);
        const double mm = measured.CentreOfMass().Distance(side.origin);
        if (!best.IsNull() && mm >= least) continue;
        best = face;
        least = mm;
    }
    return best;
}

bool editDraft(Edit& edit, Random& random) {
    Part part = randomPart(random);
    auto side = squareSide(part, random);
    while (!side) {
        part = randomPart(random);
        side = squareSide(part, random);
    }
    const double angle = between(random, 0.2, 3.0) * std::numbers::pi / 180.0;
    const TopoDS_Shape before = part.build();
    const Carrier wall = part.side(*side);
    const TopoDS_Face face = faceOf(before, wall);
    if (face.IsNull()) return false;
    BRepOffsetAPI_DraftAngle draft(before);
    draft.Add(face, gp::DZ(), angle, gp_Pln(gp::Origin(), gp::DZ()));
    if (!draft.AddDone()) return false;
    draft.Build();
    if (!draft.IsDone()) return false;
    const TopoDS_Shape after = TopExp_Explorer(draft.Shape(), TopAbs_SOLID).Current();
    const bool inwards = volumeOf(after) < volumeOf(before);
    Carrier leaning = wall;
    gp_Trsf turn;
    const gp_Vec along = gp_Vec(gp::DZ()).Crossed(gp_Vec(wall.axis));
    turn.SetRotation(gp_Ax1(wall.origin, gp_Dir(along)), inwards ? -angle : angle);
    leaning.axis.Transform(turn);
    const std::size_t count = part.corners.size();
    const std::vector<Carrier> beside = {part.top(), part.side((*side + 1) % count),
                                         part.side((*side + count - 1) % count)};
    edit.base = part.name;
    edit.states[GeometryState::Changed] = 1;
    edit.faces = {true, false, beside, beside};
    edit.faces.reference.push_back(wall);
    edit.faces.compare.push_back(leaning);
    edit.deviationMm = part.heightMm * (inwards ? std::sin(angle) : std::tan(angle));
    edit.says = "turned by";
    place(edit, random, before, after);
    return true;
}

void editAssembly(Edit& edit, Random& random) {
    const Part part = randomPart(random);
    const TopoDS_Shape shape = part.build();
    const Surroundings assembly = randomAssembly(random);
    const Models models(&assembly);
    edit.base = part.name;
    edit.faces.known = true;
    gp_Trsf motion;
    TopoDS_Shape before;
    TopoDS_Shape after;
    if (edit.kind == Kind::PartMoved) {
        edit.shiftMm = between(random, 0.05, 40.0);
        motion.SetTranslation(gp_Vec(anyDirection(random)) * *edit.shiftMm);
        edit.states[GeometryState::Moved] = 1;
    } else if (edit.kind == Kind::PartRotated) {
        edit.turnDeg = between(random, 0.5, 60.0);
        motion.SetRotation(gp_Ax1(gp_Pnt(20, 300, 20), anyDirection(random)),
                           *edit.turnDeg * std::numbers::pi / 180.0);
        edit.states[GeometryState::Moved] = 1;
    } else if (edit.kind == Kind::InstanceRemoved) {
        before = models.other(0);
        edit.states[GeometryState::OnlyInReference] = 1;
    } else {
        after = edit.kind == Kind::BodyAdded ? randomPart(random).build() : models.other(0);
        edit.states[GeometryState::OnlyInCompare] = 1;
    }
    const std::string name = edit.kind == Kind::NameOnly ? part.name + " renamed" : part.name;
    if (edit.kind == Kind::NameOnly) {
        edit.states.clear();
        after.Nullify();
    }
    edit.reference = models.make(shape, part.name, gp_Trsf(), before);
    edit.compare = models.make(shape, name, motion, after);
}

void editWhole(Edit& edit, Random& random) {
    const Part part = randomPart(random);
    const TopoDS_Shape shape = part.build();
    gp_Trsf motion;
    if (edit.kind == Kind::PartMirrored) {
        motion.SetMirror(gp_Ax2(gp_Pnt(31.7, 22.3, 3.1), anyDirection(random)));
        edit.says = "mirrored";
    } else {
        const double byShare = between(random, 0.002, 0.03);
        const double factor = oneOf(random, 2) == 0 ? 1.0 + byShare : 1.0 - byShare;
        motion.SetScale(gp_Pnt(31.7, 22.3, 3.1), factor);
        edit.faces = {true, true, {}, {}};
        edit.says = "scaled to";
    }
    edit.base = part.name;
    edit.states[GeometryState::Changed] = 1;
    place(edit, random, shape, BRepBuilderAPI_Transform(shape, motion, Standard_True).Shape());
}

bool editForm(Edit& edit, Random& random) {
    const Part part = randomPart(random);
    const TopoDS_Shape shape = part.build();
    edit.base = part.name;
    edit.faces.known = true;
    TopoDS_Shape other;
    if (edit.kind == Kind::AsNurbs) {
        other = BRepBuilderAPI_NurbsConvert(shape, Standard_True).Shape();
    } else if (oneOf(random, 2) == 0) {
        ShapeUpgrade_ShapeDivideAngle divide(std::numbers::pi / 2.0, shape);
        divide.Perform();
        other = divide.Result();
    } else {
        ShapeUpgrade_ShapeDivideArea divide(shape);
        divide.MaxArea() = between(random, 300.0, 1500.0);
        divide.Perform();
        other = divide.Result();
    }
    if (other.IsNull()) return false;
    place(edit, random, shape, TopExp_Explorer(other, TopAbs_SOLID).Current());
    return true;
}

bool editFile(Edit& edit, Random& random, const std::string& folder) {
    const Part part = randomPart(random);
    edit.base = part.name;
    edit.faces.known = true;
    const bool inch = edit.kind == Kind::InchAgainstMm;
    const TopoDS_Shape shape = part.build();
    edit.reference = throughStep(shape, part.name, {"MM", false}, folder);
    edit.compare = throughStep(shape, part.name, {inch ? "INCH" : "MM", !inch}, folder);
    return edit.reference && edit.compare;
}

bool make(Edit& edit, Random& random, const std::string& folder) {
    switch (edit.kind) {
        case Kind::HoleMoved:
        case Kind::RadiusChanged:
        case Kind::BelowTolerance: editHole(edit, random); return true;
        case Kind::FilletAdded:
        case Kind::FilletRemoved: return editFillet(edit, random);
        case Kind::FaceDrafted: return editDraft(edit, random);
        case Kind::BodyAdded:
        case Kind::PartMoved:
        case Kind::PartRotated:
        case Kind::InstanceAdded:
        case Kind::InstanceRemoved:
        case Kind::NameOnly: editAssembly(edit, random); return true;
        case Kind::PartMirrored:
        case Kind::PartScaled: editWhole(edit, random); return true;
        case Kind::FacesSplit:
        case Kind::AsNurbs: return editForm(edit, random);
        case Kind::ColourOnly:
        case Kind::InchAgainstMm: return editFile(edit, random, folder);
    }
    return false;
}

}  // namespace

const char* kindName(Kind kind) {
    static constexpr const char* kNames[kKinds] = {
        "hole moved 0.05 mm", "radius changed",  "fillet added",    "fillet removed",
        "face drafted",       "body added",      "part moved",      "part rotated",
        "part mirrored",      "part scaled",     "instance added",  "instance removed",
        "colour only",        "name only",       "below tolerance", "inch against mm",
        "faces split",        "written as NURBS"};
    return kNames[static_cast<int>(kind)];
}

std::optional<Edit> makeEdit(Kind kind, Random& random, const std::string& folder) try {
    Edit edit;
    edit.kind = kind;
    if (!make(edit, random, folder)) return std::nullopt;
    return edit;
} catch (const Standard_Failure&) {
    return std::nullopt;
}

}  // namespace edits
