#include "tests/support/step_builder.h"

#include <charconv>
#include <cstdlib>

namespace support {
namespace {

using Triple = std::array<double, 3>;

constexpr std::array<std::array<int, 2>, 12> kEdges = {{{0, 1},
                                                        {2, 3},
                                                        {4, 5},
                                                        {6, 7},
                                                        {0, 2},
                                                        {1, 3},
                                                        {4, 6},
                                                        {5, 7},
                                                        {0, 4},
                                                        {1, 5},
                                                        {2, 6},
                                                        {3, 7}}};
/// Corners of each face against the clock, seen from outside; bit 0 of a corner is x, 1 y, 2 z.
constexpr std::array<std::array<int, 4>, 6> kFaces = {
    {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}}};

constexpr const char* kHead =
    "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
    "FILE_NAME('','2024-01-01T00:00:00',(''),(''),'','','');\n"
    "FILE_SCHEMA(('AUTOMOTIVE_DESIGN { 1 0 10303 214 1 1 1 1 }'));\nENDSEC;\nDATA;\n";

std::string real(double value) {
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed);
    std::string text(digits.data(), end.ptr);
    if (text.find('.') == std::string::npos) text += '.';
    return text;
}

std::string at(int number) {
    return "#" + std::to_string(number);
}

std::string triple(const Triple& values) {
    return "(" + real(values[0]) + "," + real(values[1]) + "," + real(values[2]) + ")";
}

Triple minus(const Triple& a, const Triple& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

int edgeBetween(int from, int to) {
    for (std::size_t i = 0; i < kEdges.size(); ++i) {
        if (kEdges[i][0] == from && kEdges[i][1] == to) return static_cast<int>(i) + 1;
        if (kEdges[i][1] == from && kEdges[i][0] == to) return -static_cast<int>(i) - 1;
    }
    return 0;
}

}  // namespace

StepBuilder::StepBuilder() {
    const int application = add("APPLICATION_CONTEXT('automotive design')");
    add("APPLICATION_PROTOCOL_DEFINITION('','automotive_design',2000," + at(application) + ")");
    productContext_ = add("PRODUCT_CONTEXT(''," + at(application) + ",'mechanical')");
    definitionContext_ =
        add("PRODUCT_DEFINITION_CONTEXT('part definition'," + at(application) + ",'design')");
    const int length = add("(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.))");
    const int angle = add("(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.))");
    const int solidAngle = add("(NAMED_UNIT(*)SI_UNIT($,.STERADIAN.)SOLID_ANGLE_UNIT())");
    const int precision = add("UNCERTAINTY_MEASURE_WITH_UNIT(LENGTH_MEASURE(1.E-07)," + at(length) +
                              ",'distance_accuracy_value','')");
    context_ = add("(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNCERTAINTY_ASSIGNED_CONTEXT((" +
                   at(precision) + "))GLOBAL_UNIT_ASSIGNED_CONTEXT((" + at(length) + "," +
                   at(angle) + "," + at(solidAngle) + "))REPRESENTATION_CONTEXT('',''))");
}

int StepBuilder::add(const std::string& text) {
    lines_ += at(++last_) + "=" + text + ";\n";
    return last_;
}

int StepBuilder::addPoint(const Triple& atMm) {
    return add("CARTESIAN_POINT(''," + triple(atMm) + ")");
}

int StepBuilder::addDirection(const Triple& along) {
    return add("DIRECTION(''," + triple(along) + ")");
}

int StepBuilder::addPlacement(const Triple& atMm) {
    const int point = addPoint(atMm);
    const int axis = addDirection({0, 0, 1});
    const int reference = addDirection({1, 0, 0});
    return add("AXIS2_PLACEMENT_3D(''," + at(point) + "," + at(axis) + "," + at(reference) + ")");
}

int StepBuilder::addBoxFace(const std::array<int, 12>& edges, int face) {
    const auto& loop = kFaces[static_cast<std::size_t>(face)];
    std::string items;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const int edge = edgeBetween(loop[i], loop[(i + 1) % loop.size()]);
        const int curve = edges.at(static_cast<std::size_t>(std::abs(edge)) - 1);
        const int oriented =
            add("ORIENTED_EDGE('',*,*," + at(curve) + (edge > 0 ? ",.T.)" : ",.F.)"));
        items += (items.empty() ? "" : ",") + at(oriented);
    }
    const int edgeLoop = add("EDGE_LOOP('',(" + items + "))");
    const int bound = add("FACE_OUTER_BOUND(''," + at(edgeLoop) + ",.T.)");
    Triple normal = {0, 0, 0};
    normal[static_cast<std::size_t>(face) / 2] = face % 2 == 0 ? -1 : 1;
    const int point = addPoint(corners_[static_cast<std::size_t>(loop[0])]);
    const int axis = addDirection(normal);
    const int along = addDirection(face / 2 == 0 ? Triple{0, 1, 0} : Triple{1, 0, 0});
    const int frame =
        add("AXIS2_PLACEMENT_3D(''," + at(point) + "," + at(axis) + "," + at(along) + ")");
    const int plane = add("PLANE(''," + at(frame) + ")");
    return add("ADVANCED_FACE('',(" + at(bound) + ")," + at(plane) + ",.T.)");
}

int StepBuilder::addBoxSolid(const Triple& sizeMm) {
    std::array<int, 8> corners = {};
    corners_.clear();
    for (int i = 0; i < 8; ++i) {
        corners_.push_back({i & 1 ? sizeMm[0] : 0, i & 2 ? sizeMm[1] : 0, i & 4 ? sizeMm[2] : 0});
        const int point = addPoint(corners_.back());
        corners[static_cast<std::size_t>(i)] = add("VERTEX_POINT(''," + at(point) + ")");
    }
    std::array<int, 12> edges = {};
    for (std::size_t i = 0; i < kEdges.size(); ++i) {
        const auto from = static_cast<std::size_t>(kEdges[i][0]);
        const auto to = static_cast<std::size_t>(kEdges[i][1]);
        const int start = addPoint(corners_[from]);
        Triple along = minus(corners_[to], corners_[from]);
        for (double& value : along) value = value > 0 ? 1 : 0;
        const int vector = add("VECTOR(''," + at(addDirection(along)) + ",1.)");
        const int line = add("LINE(''," + at(start) + "," + at(vector) + ")");
        edges[i] = add("EDGE_CURVE(''," + at(corners[from]) + "," + at(corners[to]) + "," +
                       at(line) + ",.T.)");
    }
    std::string faces;
    for (int face = 0; face < 6; ++face) {
        faces += (face == 0 ? "" : ",") + at(addBoxFace(edges, face));
    }
    const int shell = add("CLOSED_SHELL('',(" + faces + "))");
    return add("MANIFOLD_SOLID_BREP(''," + at(shell) + ")");
}

std::size_t StepBuilder::addProduct(const std::string& name, const std::string& representationType,
                                    const std::string& items, int origin) {
    const int product =
        add("PRODUCT('" + name + "','" + name + "','',(" + at(productContext_) + "))");
    const int formation = add("PRODUCT_DEFINITION_FORMATION('',''," + at(product) + ")");
    Product made;
    made.origin = origin;
    made.definition =
        add("PRODUCT_DEFINITION('design',''," + at(formation) + "," + at(definitionContext_) + ")");
    const int shape = add("PRODUCT_DEFINITION_SHAPE('',''," + at(made.definition) + ")");
    made.representation = add(representationType + "('',(" + items + ")," + at(context_) + ")");
    add("SHAPE_DEFINITION_REPRESENTATION(" + at(shape) + "," + at(made.representation) + ")");
    products_.push_back(made);
    return products_.size() - 1;
}

std::size_t StepBuilder::addBox(const std::string& name, const Triple& sizeMm) {
    const int origin = addPlacement({0, 0, 0});
    const int solid = addBoxSolid(sizeMm);
    return addProduct(name, "ADVANCED_BREP_SHAPE_REPRESENTATION", at(origin) + "," + at(solid),
                      origin);
}

std::size_t StepBuilder::addAssembly(const std::string& name) {
    const int origin = addPlacement({0, 0, 0});
    return addProduct(name, "SHAPE_REPRESENTATION", at(origin), origin);
}

void StepBuilder::use(std::size_t parent, std::size_t child, const Triple& atMm) {
    const Product& outer = products_[parent];
    const Product& inner = products_[child];
    const int place = addPlacement(atMm);
    const int move =
        add("ITEM_DEFINED_TRANSFORMATION('',''," + at(inner.origin) + "," + at(place) + ")");
    const int relation =
        add("(REPRESENTATION_RELATIONSHIP('',''," + at(inner.representation) + "," +
            at(outer.representation) + ")REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(" +
            at(move) + ")SHAPE_REPRESENTATION_RELATIONSHIP())");
    const int usage = add("NEXT_ASSEMBLY_USAGE_OCCURRENCE('" + std::to_string(last_ + 1) +
                          "','',''," + at(outer.definition) + "," + at(inner.definition) + ",$)");
    const int shape = add("PRODUCT_DEFINITION_SHAPE('','Placement'," + at(usage) + ")");
    add("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(" + at(relation) + "," + at(shape) + ")");
}

std::string StepBuilder::write() const {
    return kHead + lines_ + "ENDSEC;\nEND-ISO-10303-21;\n";
}

std::string chainAssembly(std::size_t levels) {
    StepBuilder builder;
    std::size_t below = builder.addBox("block", {10, 20, 30});
    for (std::size_t i = 0; i < levels; ++i) {
        const std::size_t above = builder.addAssembly("level " + std::to_string(levels - i));
        builder.use(above, below, {0, 0, 0});
        below = above;
    }
    return builder.write();
}

std::string doublingAssembly(std::size_t levels) {
    StepBuilder builder;
    std::size_t below = builder.addBox("block", {1, 2, 3});
    double stepMm = 5;
    for (std::size_t i = 0; i < levels; ++i) {
        const std::size_t above = builder.addAssembly("level " + std::to_string(levels - i));
        builder.use(above, below, {0, 0, 0});
        builder.use(above, below, {stepMm, 0, 0});
        stepMm *= 2;
        below = above;
    }
    return builder.write();
}

std::string cyclicAssembly(std::size_t length, bool belowARoot) {
    StepBuilder builder;
    const std::size_t box = builder.addBox("block", {10, 20, 30});
    std::vector<std::size_t> ring;
    for (std::size_t i = 0; i < length; ++i) {
        ring.push_back(builder.addAssembly("ring " + std::to_string(i)));
        builder.use(ring.back(), box, {0, 0, 40.0 * static_cast<double>(i)});
    }
    for (std::size_t i = 0; i < length; ++i) {
        builder.use(ring[i], ring[(i + 1) % length], {50, 0, 0});
    }
    if (belowARoot) builder.use(builder.addAssembly("root"), ring.front(), {0, 0, 0});
    return builder.write();
}

}  // namespace support
