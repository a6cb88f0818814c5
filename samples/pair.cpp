#include "samples/pair.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <TDF_Label.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>

#include "samples/model_writer.h"
#include "samples/parts.h"

namespace samples {
namespace {

constexpr int kHolesPerPlate = 12;
constexpr int kChangedEvery = 10;
constexpr double kPartPitchMm = 80.0;
constexpr double kUnitPitchMm = 1000.0;
constexpr double kLiftMm = 7.0;
/// Measured: growth of the file per further plate of kHolesPerPlate holes.
constexpr double kBytesPerPlate = 34200.0;
/// Measured: one product placed once more.
constexpr double kBytesPerUsage = 400.0;

/// How many of everything.
struct Layout {
    int parts = 0;
    int partsPerUnit = 0;
    int unitKinds = 0;
    int unitsPerModule = 0;
    int modules = 0;
    int loose = 0;  ///< parts that stand directly in the plant

    explicit Layout(const PairOptions& options) {
        const bool large = options.occurrences >= 10000;
        partsPerUnit = large ? 100 : 50;
        unitsPerModule = large ? 50 : 10;
        const int units = options.occurrences / partsPerUnit;
        // At least one part stands directly in the plant: the one that the compare side lacks.
        modules = std::max(0, units - 1) / unitsPerModule;
        const int placed = modules * unitsPerModule * partsPerUnit;
        loose = options.occurrences - placed;
        parts = options.parts > 0 ? options.parts : 200;
        if (options.sizeMb > 0.0) {
            const double usages = loose + modules * unitsPerModule;
            const double rest = options.sizeMb * 1e6 - usages * kBytesPerUsage;
            parts = std::max(1, static_cast<int>(rest / kBytesPerPlate));
        }
        // Enough kinds of units for every part to be used.
        unitKinds = std::max(large ? 20 : 10, (parts + partsPerUnit - 1) / partsPerUnit);
    }
};

std::string numbered(const char* text, int number) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
    return text + (" " + digits);
}

gp_Trsf at(double x, double y, double z) {
    gp_Trsf placement;
    placement.SetTranslation(gp_Vec(x, y, z));
    return placement;
}

gp_Trsf onGrid(int number, int columns, double pitchMm, double zMm) {
    const int column = number % columns;
    const int row = number / columns;
    return at(pitchMm * column, pitchMm * row, zMm);
}

gp_Trsf turned(int quarters, const gp_Trsf& placement) {
    gp_Trsf turn;
    turn.SetRotation(gp_Ax1(gp::Origin(), gp::DZ()), quarters * std::acos(0.0));
    return placement * turn;
}

class Plant {
public:
    Plant(const Layout& layout, bool compare) : layout_(layout), compare_(compare) {}

    bool write(const std::string& path, std::string& error) {
        const TDF_Label root = out_.assembly("Plant");
        addParts();
        addUnits();
        for (int module = 0; module < layout_.modules; ++module) addModule(root, module);
        addLooseParts(root);
        return out_.write(path, std::filesystem::path(path).filename().string(), error);
    }

    const PairTruth& truth() const { return truth_; }

private:
    static bool isChanged(int part) { return part % kChangedEvery == 0; }

    void addParts() {
        for (int i = 0; i < layout_.parts; ++i) {
            const double grow = compare_ && isChanged(i) ? 0.25 : 0.0;
            const auto shape = seededPlate(static_cast<std::uint32_t>(i + 1), kHolesPerPlate, grow);
            parts_.push_back(out_.part(numbered("Plate", i), shape));
        }
    }

    int partOf(int unitKind, int slot) const {
        return (unitKind * layout_.partsPerUnit + slot) % layout_.parts;
    }

    void addUnits() {
        for (int kind = 0; kind < layout_.unitKinds; ++kind) {
            const TDF_Label unit = out_.assembly(numbered("Unit", kind));
            for (int slot = 0; slot < layout_.partsPerUnit; ++slot) {
                const gp_Trsf place = onGrid(slot, 10, kPartPitchMm, 0);
                out_.place(unit, parts_[static_cast<std::size_t>(partOf(kind, slot))],
                           turned(slot % 4, place));
            }
            units_.push_back(unit);
        }
    }

    void addModule(const TDF_Label& root, int number) {
        const TDF_Label module = out_.assembly(numbered("Module", number));
        for (int i = 0; i < layout_.unitsPerModule; ++i) {
            const int kind = (number * layout_.unitsPerModule + i) % layout_.unitKinds;
            const bool lifted = number % 2 == 0 && i == 0;
            const double z = compare_ && lifted ? kLiftMm : 0.0;
            out_.place(module, units_[static_cast<std::size_t>(kind)],
                       onGrid(i, 10, kUnitPitchMm, z));
            for (int slot = 0; slot < layout_.partsPerUnit; ++slot) {
                count(isChanged(partOf(kind, slot)), lifted);
            }
        }
        out_.place(root, module, at(0, 0, kUnitPitchMm * (number + 1)));
    }

    void addLooseParts(const TDF_Label& root) {
        for (int i = 0; i < layout_.loose; ++i) {
            if (i == layout_.loose - 1) {
                ++truth_.deleted;
                if (compare_) continue;
            } else {
                count(isChanged(i % layout_.parts), false);
            }
            out_.place(root, parts_[static_cast<std::size_t>(i % layout_.parts)],
                       onGrid(i, 100, kPartPitchMm, 0));
        }
        truth_.added = 2;
        if (!compare_) return;
        for (int i = 0; i < truth_.added; ++i) {
            const auto seed = static_cast<std::uint32_t>(1000000 + i);
            const TDF_Label spare = out_.part(numbered("Spare", i), seededPlate(seed, 5));
            out_.place(root, spare, at(-1000.0, 200.0 * i, 0));
        }
    }

    void count(bool changed, bool lifted) {
        ++(changed ? truth_.changed : lifted ? truth_.moved : truth_.unchanged);
    }

    Layout layout_;
    bool compare_;
    ModelWriter out_;
    std::vector<TDF_Label> parts_;
    std::vector<TDF_Label> units_;
    PairTruth truth_;
};

}  // namespace

bool writePair(const PairOptions& options, PairTruth& truth, std::string& error) {
    const Layout layout(options);
    const std::filesystem::path folder(options.folder);
    const std::string stem = "pair_" + std::to_string(options.occurrences);
    for (const bool compare : {false, true}) {
        Plant plant(layout, compare);
        const std::string name = stem + (compare ? "_compare.step" : "_reference.step");
        if (!plant.write((folder / name).string(), error)) return false;
        truth = plant.truth();
    }
    return true;
}

}  // namespace samples
