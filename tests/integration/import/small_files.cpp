#include "tests/integration/import/small_files.h"

#include <set>
#include <stdexcept>

#include "tests/support/step_builder.h"
#include "tests/support/step_text.h"

namespace import_test {
namespace {

using support::StepEntity;
using support::StepText;

StepText parsed(const std::string& text) {
    auto read = StepText::parse(text);
    if (!read) throw std::logic_error("the builder's text is no STEP");
    return *read;
}

/// Entity of a type by its position among those of that type.
StepEntity& nth(StepText& text, const std::string& type, std::size_t index) {
    for (StepEntity& entity : text.entities) {
        const auto types = support::entityTypes(entity.text);
        if (types.size() == 1 && types[0] == type && index-- == 0) return entity;
    }
    throw std::logic_error("no such entity: " + type);
}

std::string ref(std::uint64_t number) {
    return "#" + std::to_string(number);
}

/// Makes a representation one of another type with another body.
void replaceBody(StepEntity& representation, const std::string& type, const std::string& body) {
    const auto numbers = support::entityReferences(representation.text);
    representation.text =
        type + "('',(" + ref(numbers.front()) + "," + body + ")," + ref(numbers.back()) + ")";
}

/// Bodies and faces that nothing refers to any more would be reported as not translated.
void removeUnused(StepText& text) {
    for (const char* type : {"MANIFOLD_SOLID_BREP", "CLOSED_SHELL", "ADVANCED_FACE"}) {
        std::set<std::uint64_t> used;
        for (const StepEntity& entity : text.entities) {
            for (const std::uint64_t number : support::entityReferences(entity.text)) {
                used.insert(number);
            }
        }
        std::erase_if(text.entities, [&](const StepEntity& entity) {
            const auto types = support::entityTypes(entity.text);
            return types.front() == type && used.count(entity.number) == 0;
        });
    }
}

void addSkin(StepText& text) {
    StepEntity& shell = nth(text, "CLOSED_SHELL", 1);
    std::string faces;
    const auto all = support::entityReferences(shell.text);
    for (std::size_t i = 1; i < all.size(); ++i) faces += (i > 1 ? "," : "") + ref(all[i]);
    text.entities.push_back({9000, "OPEN_SHELL('',(" + faces + "))"});
    text.entities.push_back({9001, "SHELL_BASED_SURFACE_MODEL('hull',(#9000))"});
}

void addWire(StepText& text) {
    text.entities.push_back({9011, "GEOMETRIC_CURVE_SET('wire',(#9012))"});
    text.entities.push_back({9012,
                             "TRIMMED_CURVE('',#9013,(PARAMETER_VALUE(0.)),(PARAMETER_VALUE(10.)),"
                             ".T.,.PARAMETER.)"});
    text.entities.push_back({9013, "LINE('',#9014,#9015)"});
    text.entities.push_back({9014, "CARTESIAN_POINT('',(0.,0.,0.))"});
    text.entities.push_back({9015, "VECTOR('',#9016,1.)"});
    text.entities.push_back({9016, "DIRECTION('',(1.,0.,0.))"});
}

void addWords(StepText& text, const std::string& definition, const std::string& shape,
              const std::string& representation, const std::string& context) {
    const std::pair<std::uint64_t, std::string> lines[] = {
        {9100, "PROPERTY_DEFINITION('user defined attribute','Material'," + definition + ")"},
        {9101, "PROPERTY_DEFINITION_REPRESENTATION(#9100,#9102)"},
        {9102, "REPRESENTATION('',(#9103)," + context + ")"},
        {9103, "DESCRIPTIVE_REPRESENTATION_ITEM('Material','steel')"},
        {9110, "SHAPE_ASPECT('',''," + shape + ",.T.)"},
        {9111, "DIMENSIONAL_SIZE(#9110,'diameter')"},
        {9112, "DIMENSIONAL_SIZE(#9110,'radius')"},
        {9113, "DRAUGHTING_MODEL_ITEM_ASSOCIATION('','',#9112,$,#9114)"},
        {9114, "ANNOTATION_OCCURRENCE('',(#9115),$)"},
        {9115, "PRESENTATION_STYLE_ASSIGNMENT((#9116))"},
        {9116, "CURVE_STYLE('',$,$,#9117)"},
        {9117, "COLOUR_RGB('',0.,1.,0.)"},
        {9120, "ROUND_HOLE('H7',''," + shape + ",.T.)"},
        {9130, "CONSTRUCTIVE_GEOMETRY_REPRESENTATION('',(#9131)," + context + ")"},
        {9131, "PLANE('middle',#9132)"},
        {9132, "AXIS2_PLACEMENT_3D('',#9014,$,$)"},
        {9133,
         "CONSTRUCTIVE_GEOMETRY_REPRESENTATION_RELATIONSHIP('',''," + representation + ",#9130)"},
    };
    for (const auto& [number, line] : lines) text.entities.push_back({number, line});
}

}  // namespace

std::string everythingFile() {
    support::StepBuilder builder;
    const std::size_t parts[] = {builder.addBox("solid", {10, 20, 30}),
                                 builder.addBox("skin", {10, 20, 30}),
                                 builder.addBox("wire", {10, 20, 30})};
    const std::size_t top = builder.addAssembly("top");
    for (std::size_t i = 0; i < 3; ++i) {
        builder.use(top, parts[i], {40.0 * static_cast<double>(i), 0, 0});
    }
    StepText text = parsed(builder.write());
    const std::string brep = "ADVANCED_BREP_SHAPE_REPRESENTATION";
    StepEntity& wire = nth(text, brep, 2);
    StepEntity& skin = nth(text, brep, 1);
    const StepEntity solid = nth(text, brep, 0);
    replaceBody(wire, "GEOMETRICALLY_BOUNDED_WIREFRAME_SHAPE_REPRESENTATION", "#9011");
    replaceBody(skin, "MANIFOLD_SURFACE_SHAPE_REPRESENTATION", "#9001");
    addWords(text, ref(nth(text, "PRODUCT_DEFINITION", 0).number),
             ref(nth(text, "PRODUCT_DEFINITION_SHAPE", 0).number), ref(solid.number),
             ref(support::entityReferences(solid.text).back()));
    addSkin(text);
    addWire(text);
    removeUnused(text);
    return text.write();
}

std::string boxFile() {
    support::StepBuilder builder;
    builder.addBox("block", {10, 20, 30});
    return builder.write();
}

std::string inchBoxFile() {
    StepText text = parsed(boxFile());
    for (StepEntity& entity : text.entities) {
        if (entity.text.find(".MILLI.,.METRE.") == std::string::npos) continue;
        entity.text = "(CONVERSION_BASED_UNIT('INCH',#9000)LENGTH_UNIT()NAMED_UNIT(#9002))";
    }
    text.entities.push_back({9000, "LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#9001)"});
    text.entities.push_back({9001, "(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.))"});
    text.entities.push_back({9002, "DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.)"});
    return text.write();
}

std::string tetrahedronFile() {
    support::StepBuilder builder;
    builder.addAssembly("mesh");
    StepText text = parsed(builder.write());
    const StepEntity own = nth(text, "SHAPE_REPRESENTATION", 0);
    text.entities.push_back({9000, "TESSELLATED_SHAPE_REPRESENTATION('',(#9001)," +
                                       ref(support::entityReferences(own.text).back()) + ")"});
    text.entities.push_back({9001, "TESSELLATED_SOLID('tetra',(#9002),$)"});
    text.entities.push_back(
        {9002, "TRIANGULATED_FACE('',#9003,4,(),$,(),((1,3,2),(1,2,4),(2,3,4),(1,4,3)))"});
    text.entities.push_back(
        {9003, "COORDINATES_LIST('',4,((0.,0.,0.),(1.,0.,0.),(0.,1.,0.),(0.,0.,1.)))"});
    text.entities.push_back(
        {9004, "SHAPE_REPRESENTATION_RELATIONSHIP('',''," + ref(own.number) + ",#9000)"});
    return text.write();
}

}  // namespace import_test
