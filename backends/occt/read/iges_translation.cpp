#include "backends/occt/read/iges_translation.h"

#include <algorithm>
#include <array>
#include <set>

#include <BRep_Builder.hxx>
#include <IGESData_IGESEntity.hxx>
#include <IGESData_IGESModel.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_TShape.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

namespace occt {
namespace {

using iges::Kind;

struct Group {
    TopoDS_Compound shape;
    bool any = false;
};

void addTo(Group& group, const TopoDS_Shape& shape) {
    const BRep_Builder builder;
    if (!group.any) builder.MakeCompound(group.shape);
    builder.Add(group.shape, shape);
    group.any = true;
}

/// Adds the parts of a shape of one of the given types; whether there were any.
bool addParts(Group& group, const TopoDS_Shape& shape, TopAbs_ShapeEnum type,
              TopAbs_ShapeEnum avoid = TopAbs_SHAPE) {
    bool any = false;
    for (TopExp_Explorer part(shape, type, avoid); part.More(); part.Next()) {
        addTo(group, part.Current());
        any = true;
    }
    return any;
}

std::size_t countFacesOf(const TopoDS_Shape& shape) {
    std::size_t count = 0;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next()) ++count;
    return count;
}

/// Faces that a solid, shell or face lists.
std::vector<std::uint32_t> facesOf(const iges::Text& text, std::uint32_t number) {
    std::vector<std::uint32_t> faces;
    std::vector<std::uint32_t> open = {number};
    std::set<std::uint32_t> seen = {number};
    while (!open.empty()) {
        const std::uint32_t next = open.back();
        open.pop_back();
        const iges::Entity* const entity = text.find(next);
        const Kind kind = entity ? kindOf(*entity) : Kind::None;
        if (kind == Kind::Face || kind == Kind::Surface) faces.push_back(next);
        if (kind != Kind::Solid && kind != Kind::Shell) continue;
        for (const std::uint32_t part : partsOf(text, *entity)) {
            if (seen.insert(part).second) open.push_back(part);
        }
    }
    return faces;
}

void say(std::size_t translated, std::size_t declared, const char* what,
         std::vector<std::string>& gaps) {
    if (translated >= declared) return;
    gaps.push_back(std::to_string(translated) + " of " + std::to_string(declared) + " " + what +
                   " were translated.");
}

}  // namespace

bool IgesTranslation::read(const std::string& path) {
    if (reader_.ReadFile(path.c_str()) != IFSelect_RetDone) return false;
    return !reader_.IGESModel().IsNull() && reader_.IGESModel()->NbEntities() > 0;
}

TopoDS_Shape IgesTranslation::translate(const iges::Text& text, std::uint32_t number) {
    const auto known = shapes_.find(number);
    if (known != shapes_.end()) return known->second;
    TopoDS_Shape& shape = shapes_[number];
    const auto model = reader_.IGESModel();
    const int position = static_cast<int>(number / 2) + 1;
    if (position > model->NbEntities()) return shape;
    const auto entity = model->Entity(position);
    // The reader and the directory must speak of the same entity.
    if (entity.IsNull() || entity->TypeNumber() != text.find(number)->type) return shape;
    try {
        if (!reader_.TransferEntity(entity)) return shape;
        const auto process = reader_.WS()->TransferReader()->TransientProcess();
        shape = TransferBRep::ShapeResult(process, entity);
    } catch (const Standard_OutOfMemory&) {
        throw;
    } catch (const Standard_Failure&) {
        shape.Nullify();
    }
    return shape;
}

TopoDS_Shape IgesTranslation::shape(const iges::Text& text,
                                    const std::vector<std::uint32_t>& entities) {
    Group all;
    Group faces;
    Group curves;
    Group points;
    for (const std::uint32_t number : entities) {
        const TopoDS_Shape one = translate(text, number);
        countFaces(text, number, one);
        if (one.IsNull()) continue;
        switch (kindOf(*text.find(number))) {
            case Kind::Solid:
            case Kind::Shell: {
                for (const TopAbs_ShapeEnum type : {TopAbs_SOLID, TopAbs_SHELL}) {
                    for (TopExp_Explorer body(one, type,
                                              type == TopAbs_SHELL ? TopAbs_SOLID : TopAbs_SHAPE);
                         body.More(); body.Next()) {
                        origins_[body.Current().TShape().get()] = number;
                        addTo(all, body.Current());
                    }
                }
                addParts(faces, one, TopAbs_FACE, TopAbs_SHELL);
                break;
            }
            case Kind::Face:
            case Kind::Surface: addParts(faces, one, TopAbs_FACE); break;
            case Kind::Curve: addParts(curves, one, TopAbs_EDGE); break;
            case Kind::Point: addParts(points, one, TopAbs_VERTEX); break;
            default: break;
        }
    }
    for (Group* const group : {&faces, &curves, &points}) {
        if (group->any) addTo(all, group->shape);
    }
    return all.any ? TopoDS_Shape(all.shape) : TopoDS_Shape();
}

void IgesTranslation::countFaces(const iges::Text& text, std::uint32_t number,
                                 const TopoDS_Shape& shape) {
    const std::vector<std::uint32_t> faces = facesOf(text, number);
    std::size_t found = shape.IsNull() ? 0 : std::min(faces.size(), countFacesOf(shape));
    for (const std::uint32_t face : faces) {
        std::size_t& reached = reachedFaces_[face];
        if (found == 0) continue;
        reached = 1;
        --found;
    }
}

std::uint32_t IgesTranslation::entityOf(const TopoDS_Shape& body) const {
    const auto found = origins_.find(body.TShape().get());
    return found == origins_.end() ? 0 : found->second;
}

std::vector<std::string> IgesTranslation::gaps(const iges::Text& text,
                                               const iges::Structure& structure) const {
    const std::set<std::uint32_t> unused(structure.unused.begin(), structure.unused.end());
    Count bodies;
    Count curves;
    Count points;
    Count faces;
    std::size_t unknown = 0;
    for (std::size_t i = 0; i < text.entities().size(); ++i) {
        const std::uint32_t number = iges::Text::numberOf(i);
        if (unused.count(number) != 0) continue;
        const Kind kind = kindOf(text.entities()[i]);
        const auto known = shapes_.find(number);
        const bool wasTried = known != shapes_.end();
        const bool isThere = wasTried && !known->second.IsNull();
        const auto face = reachedFaces_.find(number);
        const auto count = [isThere](Count& counted) {
            ++counted.declared;
            counted.translated += isThere ? 1 : 0;
        };
        // A shell may be of a solid, a surface, curve or point of another entity.
        if (kind == Kind::Solid || (kind == Kind::Shell && wasTried)) count(bodies);
        if (kind == Kind::Curve && wasTried) count(curves);
        if (kind == Kind::Point && wasTried) count(points);
        if (kind == Kind::Face || (kind == Kind::Surface && face != reachedFaces_.end())) {
            ++faces.declared;
            faces.translated += face != reachedFaces_.end() ? face->second : 0;
        }
        unknown += kind == Kind::Unknown ? 1 : 0;
    }
    std::vector<std::string> gaps;
    say(bodies.translated, bodies.declared, "bodies", gaps);
    say(faces.translated, faces.declared, "faces", gaps);
    say(curves.translated, curves.declared, "curves", gaps);
    say(points.translated, points.declared, "points", gaps);
    if (unknown > 0) {
        gaps.push_back(std::to_string(unknown) +
                       " entities of constructive solid geometry were not read.");
    }
    return gaps;
}

}  // namespace occt
