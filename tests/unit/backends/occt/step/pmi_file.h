#pragma once

#include <string>
#include <vector>

#include "backends/occt/step/pmi.h"
#include "tests/unit/backends/occt/step/product_text.h"
#include "tests/unit/backends/occt/step/step_file.h"

namespace step_test {

using Texts = std::vector<std::string>;

/// Two products in millimetres, an aspect of each (#70 and #71), a length of 0.05 (#72), and
/// degrees (#930).
inline std::vector<occt::step::Pmi> pmiOf(const std::string& text) {
    const StepFile step(
        kContexts + product(10, "", "a") + product(20, "", "b") +
        "#70=SHAPE_ASPECT('','',#13,.T.);#71=SHAPE_ASPECT('','',#23,.T.);"
        "#72=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(0.05),#901);"
        "#931=PLANE_ANGLE_MEASURE_WITH_UNIT(PLANE_ANGLE_MEASURE(0.0174532925),#932);"
        "#932=(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.));"
        "#930=(CONVERSION_BASED_UNIT('DEGREE',#931)NAMED_UNIT(*)PLANE_ANGLE_UNIT());" +
        text);
    return occt::step::readPmi(step.file, occt::step::readProducts(step.file));
}

/// Each item as "name|text".
inline Texts lines(const std::vector<occt::step::Pmi>& all) {
    Texts out;
    for (const occt::step::Pmi& pmi : all) out.push_back(pmi.name + "|" + pmi.text);
    return out;
}

inline Texts linesOf(const std::string& text) {
    return lines(pmiOf(text));
}

/// A measure as an item of a representation.
inline std::string item(int number, const std::string& name, const std::string& measure,
                        int unit = 901, const std::string& more = "") {
    return ref(number) + "=(LENGTH_MEASURE_WITH_UNIT()MEASURE_REPRESENTATION_ITEM()" +
           "MEASURE_WITH_UNIT(" + measure + "," + ref(unit) + ")" + more + "REPRESENTATION_ITEM('" +
           name + "'));";
}

/// What ties the dimension #30 to a representation (#32) with these items.
inline std::string dimensionItems(const std::string& items) {
    return "#31=DIMENSIONAL_CHARACTERISTIC_REPRESENTATION(#30,#32);"
           "#32=SHAPE_DIMENSION_REPRESENTATION('',(" +
           items + "),#900);";
}

}  // namespace step_test
