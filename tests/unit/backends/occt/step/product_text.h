#pragma once

#include <string>

namespace step_test {

inline std::string ref(int number) {
    return "#" + std::to_string(number);
}

/// Millimetres as context 900, inches as 910; a point, a direction and origin placements.
inline const std::string kContexts =
    "#901=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.));\n"
    "#900=(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#901))"
    "REPRESENTATION_CONTEXT('',''));\n"
    "#911=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#901);\n"
    "#912=(CONVERSION_BASED_UNIT('INCH',#911)LENGTH_UNIT()NAMED_UNIT(*));\n"
    "#910=(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#912))"
    "REPRESENTATION_CONTEXT('',''));\n"
    "#920=CARTESIAN_POINT('',(0.,0.,0.));\n";

/// A product with the numbers base (PRODUCT) to base + 6. Its definition is base + 2, that one's
/// shape base + 3, its representation base + 4, and that one's origin base + 5.
inline std::string product(int base, const std::string& id, const std::string& name,
                           int context = 900, const std::string& moreItems = "") {
    return ref(base) + "=PRODUCT('" + id + "','" + name + "','',());\n" + ref(base + 1) +
           "=PRODUCT_DEFINITION_FORMATION('','',#" + std::to_string(base) + ");\n" + ref(base + 2) +
           "=PRODUCT_DEFINITION('','',#" + std::to_string(base + 1) + ",$);\n" + ref(base + 3) +
           "=PRODUCT_DEFINITION_SHAPE('','',#" + std::to_string(base + 2) + ");\n" + ref(base + 4) +
           "=SHAPE_REPRESENTATION('',(" + ref(base + 5) + moreItems + ")," + ref(context) + ");\n" +
           ref(base + 5) + "=AXIS2_PLACEMENT_3D('',#920,$,$);\n" + ref(base + 6) +
           "=SHAPE_DEFINITION_REPRESENTATION(" + ref(base + 3) + "," + ref(base + 4) + ");\n";
}

/// Which way round a relation lists its two sides.
enum class Sides { ByTheRule, RepresentationsTurned, ItemsTurned, BothTurned };

/// Usage with the numbers base to base + 5 of the product at `child` in the one at `parent`,
/// moved by x.
inline std::string usage(int base, int parent, int child, double x, const std::string& id = "",
                         Sides sides = Sides::ByTheRule) {
    std::string from = ref(child + 4);
    std::string to = ref(parent + 4);
    std::string source = ref(child + 5);
    std::string target = ref(base + 1);
    if (sides == Sides::RepresentationsTurned || sides == Sides::BothTurned) from.swap(to);
    if (sides == Sides::ItemsTurned || sides == Sides::BothTurned) source.swap(target);
    return ref(base) + "=CARTESIAN_POINT('',(" + std::to_string(x) + ",0.,0.));\n" + ref(base + 1) +
           "=AXIS2_PLACEMENT_3D(''," + ref(base) + ",$,$);\n" + ref(base + 2) +
           "=ITEM_DEFINED_TRANSFORMATION('',''," + source + "," + target + ");\n" + ref(base + 3) +
           "=(REPRESENTATION_RELATIONSHIP('',''," + from + "," + to +
           ")REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(" + ref(base + 2) +
           ")SHAPE_REPRESENTATION_RELATIONSHIP());\n" + ref(base + 4) +
           "=NEXT_ASSEMBLY_USAGE_OCCURRENCE('" + id + "','',''," + ref(parent + 2) + "," +
           ref(child + 2) + ",$);\n" + ref(base + 5) + "=PRODUCT_DEFINITION_SHAPE('',''," +
           ref(base + 4) + ");\n" + ref(base + 6) + "=CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(" +
           ref(base + 3) + "," + ref(base + 5) + ");\n";
}

}  // namespace step_test
