#include "samples/gearbox.h"

#include <filesystem>
#include <numbers>

#include <TDF_Label.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>

#include "samples/model_writer.h"
#include "samples/parts.h"

namespace samples {
namespace {

constexpr double kLengthMm = 160.0;
constexpr double kWidthMm = 90.0;
constexpr double kHeightMm = 80.0;
constexpr double kBoreRadiusMm = 21.0;

/// All that differs between the two sides.
struct Changes {
    explicit Changes(Side side) : compare(side == Side::Compare) {}

    bool compare;
    // Renamed: the same cover in the same place.
    const char* coverName() const { return compare ? "Top cover" : "Cover"; }
    // Moved: the oil plug, 12 mm along x.
    double plugXMm() const { return compare ? 42.0 : 30.0; }
    // Re-shaped: the bore of the large gear.
    double largeBoreRadiusMm() const { return compare ? 11.0 : 10.0; }
    // Re-counted: two bolts more.
    int boltCount() const { return compare ? 10 : 8; }
    // Deleted: the sight glass. Added: the breather.
    bool sightGlass() const { return !compare; }
    bool breather() const { return compare; }
    // Attributes: one with another value, one gone, one new; and another material.
    const char* revision() const { return compare ? "C" : "B"; }
    bool coating() const { return !compare; }
    bool inspector() const { return compare; }
    const char* housingMaterial() const { return compare ? "EN-GJL-300" : "EN-GJL-250"; }
    // PMI: another tolerance on the bore, and a flatness that only the compare side has.
    double boreUpperMm() const { return compare ? 0.021 : 0.033; }
    bool flatness() const { return compare; }
};

gp_Trsf at(double x, double y, double z) {
    gp_Trsf placement;
    placement.SetTranslation(gp_Vec(x, y, z));
    return placement;
}

/// The z axis of the part turned to +y, then moved.
gp_Trsf acrossAt(double x, double y, double z) {
    gp_Trsf turn;
    turn.SetRotation(gp_Ax1(gp::Origin(), gp::DX()), -std::numbers::pi / 2.0);
    return at(x, y, z) * turn;
}

class Gearbox {
public:
    explicit Gearbox(Side side) : changes_(side) {}

    bool write(const std::string& path, std::string& error) {
        root_ = out_.assembly("Getriebe größe 2");
        addHousing();
        addCover();
        bearing_ = out_.part("Bearing 6204", bearing(10.0, 20.0, 12.0));
        out_.color(bearing_, 0.75, 0.75, 0.78);
        addInputShaft();
        addOutputShaft();
        addBolts();
        addSmallParts();
        addAttributes();
        return out_.write(path, std::filesystem::path(path).filename().string(), error);
    }

private:
    void addHousing() {
        const TopoDS_Shape shape = housing(kLengthMm, kWidthMm, kHeightMm, kBoreRadiusMm);
        const TDF_Label part = out_.part("Housing", shape);
        out_.color(part, 0.35, 0.42, 0.50);
        out_.material(part, changes_.housingMaterial(), "grey cast iron", 7200.0);
        const TopoDS_Face bore = cylinderFace(shape, kBoreRadiusMm);
        const TopoDS_Face top = topFace(shape);
        ModelWriter::Dimension diameter;
        diameter.diameter = true;
        diameter.name = "Bearing seat";
        diameter.valueMm = 2.0 * kBoreRadiusMm;
        diameter.upperMm = changes_.boreUpperMm();
        diameter.lowerMm = 0.0;
        out_.dimension(part, bore, diameter);
        out_.datum(part, top, "A");
        out_.position(part, bore, 0.05, "A");
        if (changes_.flatness()) out_.flatness(part, top, 0.02);
        out_.place(root_, part, gp_Trsf());
    }

    void addCover() {
        const TDF_Label part = out_.part(changes_.coverName(), cover(kLengthMm, kWidthMm, 6.0));
        out_.color(part, 0.55, 0.60, 0.65);
        out_.material(part, "EN AW-6082", "aluminium alloy", 2700.0);
        out_.place(root_, part, at(0, 0, kHeightMm));
    }

    void placeBearings(const TDF_Label& assembly) {
        out_.place(assembly, bearing_, at(0, 0, -4.0));
        out_.place(assembly, bearing_, at(0, 0, kWidthMm - 8.0));
    }

    void addInputShaft() {
        const TDF_Label assembly = out_.assembly("Antriebswelle komplett");
        const TopoDS_Shape shape = shaft(120.0, 10.0);
        const TDF_Label part = out_.part("Antriebswelle", shape);
        out_.material(part, "42CrMo4", "quenched and tempered steel", 7850.0);
        ModelWriter::Dimension diameter;
        diameter.diameter = true;
        diameter.name = "Gear seat";
        diameter.valueMm = 20.0;
        diameter.upperMm = 0.015;
        diameter.lowerMm = -0.002;
        out_.dimension(part, cylinderFace(shape, 10.0), diameter);
        out_.place(assembly, part, at(0, 0, -15.0));
        const TDF_Label wheel = out_.part("Zahnrad größe 12", gear(12, 3.0, 18.0, 10.0));
        out_.color(wheel, 0.80, 0.62, 0.25);
        out_.place(assembly, wheel, at(0, 0, 36.0));
        placeBearings(assembly);
        out_.place(root_, assembly, acrossAt(kLengthMm * 0.3, 0, kHeightMm * 0.55));
    }

    void addOutputShaft() {
        const TDF_Label assembly = out_.assembly("出力軸");
        const TDF_Label part = out_.part("Output shaft", shaft(130.0, 11.0));
        out_.material(part, "42CrMo4", "quenched and tempered steel", 7850.0);
        out_.place(assembly, part, at(0, 0, -20.0));
        const TDF_Label wheel =
            out_.part("歯車 18", gear(18, 3.0, 16.0, changes_.largeBoreRadiusMm()));
        out_.color(wheel, 0.80, 0.62, 0.25);
        out_.place(assembly, wheel, at(0, 0, 37.0));
        const TDF_Label shaftKey = out_.part("Шпонка", key(14.0, 5.0, 5.0));
        gp_Trsf upright;
        upright.SetRotation(gp_Ax1(gp::Origin(), gp::DY()), std::numbers::pi / 2.0);
        out_.place(assembly, shaftKey, at(8.0, 0, 45.0) * upright);
        placeBearings(assembly);
        out_.place(root_, assembly, acrossAt(kLengthMm * 0.7, 0, kHeightMm * 0.55));
    }

    void addBolts() {
        const TDF_Label part = out_.part("Bolt M8x25", bolt(4.0, 25.0));
        for (int i = 0; i < changes_.boltCount(); ++i) {
            const int column = i / 2;
            const double x = 15.0 + 32.0 * column;
            const double y = i % 2 == 0 ? 4.0 : kWidthMm - 4.0;
            out_.place(root_, part, at(x, y, kHeightMm + 6.0));
        }
    }

    void addSmallParts() {
        const TDF_Label dowel = out_.part("Dowel pin", pin(3.0, 16.0));
        out_.place(root_, dowel, at(4.0, 20.0, kHeightMm - 8.0));
        out_.place(root_, dowel, at(kLengthMm - 4.0, 70.0, kHeightMm - 8.0));
        const TDF_Label oilPlug = out_.part("Oil plug", plug(8.0, 14.0));
        gp_Trsf downward;
        downward.SetRotation(gp_Ax1(gp::Origin(), gp::DX()), std::numbers::pi);
        out_.place(root_, oilPlug, at(changes_.plugXMm(), 45.0, 12.0) * downward);
        if (changes_.sightGlass()) {
            const TDF_Label glass = out_.part("Sight glass", sightGlass(14.0, 4.0));
            out_.place(root_, glass, acrossAt(kLengthMm / 2, kWidthMm, 25.0));
        }
        if (changes_.breather()) {
            const TDF_Label breather = out_.part("Сапун", plug(11.0, 9.0));
            out_.place(root_, breather, at(kLengthMm / 2, kWidthMm / 2, kHeightMm + 6.0));
        }
    }

    void addAttributes() {
        out_.property("Getriebe größe 2", "Part number", "GB-2000");
        out_.property("Getriebe größe 2", "Revision", changes_.revision());
        out_.property("Housing", "Hersteller", "Gießerei Müller");
        if (changes_.coating()) out_.property("Housing", "Coating", "RAL 7016");
        if (changes_.inspector()) out_.property("Housing", "検査", "三次元測定機");
        out_.property("Bolt M8x25", "Standard", "ISO 4017");
        out_.property("Bolt M8x25", "Supplier", "Крепёж");
        out_.lengthProperty("Bolt M8x25", "Thread length", 22.5);
    }

    Changes changes_;
    ModelWriter out_;
    TDF_Label root_;
    TDF_Label bearing_;
};

}  // namespace

bool writeGearbox(Side side, const std::string& path, std::string& error) {
    return Gearbox(side).write(path, error);
}

}  // namespace samples
