// What files say about their own volumes, areas and centroids, for the readers to check themselves.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <map>
#include <optional>

#include "platform/hps/component_type.h"
#include "tests/integration/data/data_imports.h"
#include "tests/support/real_data.h"

namespace {

namespace Type = HPS::ComponentType;
using import_test::Imported;

// Some writers measure triangles: they miss the volume of a plain rod by this much.
constexpr double kRelative = 5e-3;
// Others measure as exactly as we do.
constexpr double kExact = 1e-6;

std::optional<HPS::MetadataValue> valueOf(const HPS::Component& component, const std::string& key) {
    for (const auto& value : component.Provider()->metadata(component.Id())) {
        if (value->name == key) return *value;
    }
    return std::nullopt;
}

/// The number of "5.2 in³" or of a plain number in the occurrence's unit, in powers of
/// millimetres.
std::optional<double> number(const HPS::MetadataValue& value, double unitMm, int power) {
    if (const auto* plain = std::get_if<double>(&value.value)) {
        return *plain * std::pow(unitMm, power);
    }
    const auto* text = std::get_if<std::string>(&value.value);
    if (text == nullptr) return std::nullopt;
    double out = 0.0;
    const auto end = std::from_chars(text->data(), text->data() + text->size(), out);
    const std::string unit(end.ptr, text->data() + text->size());
    const double lengthMm = unit.starts_with(" mm")   ? 1.0
                            : unit.starts_with(" in") ? 25.4
                            : unit.starts_with(" m")  ? 1000.0
                                                      : 0.0;
    if (lengthMm == 0.0) return std::nullopt;
    return out * std::pow(lengthMm, power);
}

struct Sums {
    double volumeMm3 = 0.0;
    double areaMm2 = 0.0;
    std::vector<std::array<double, 3>> centroidsMm;
};

class Validation : public data_test::DataImports {
protected:
    static Sums sumsOf(const Imported& read, const HPS::Component& occurrence) {
        Sums sums;
        for (const HPS::Component& body : occurrence.GetAllSubcomponents(Type::BrepModel)) {
            const auto* const identity = read.model->identity(body.Id());
            if (identity == nullptr) continue;
            sums.volumeMm3 += identity->volumeMm3;
            sums.areaMm2 += identity->areaMm2;
            sums.centroidsMm.push_back(identity->centroidMm);
        }
        return sums;
    }

    void checkNumber(const HPS::Component& occurrence, const std::string& key, double unitMm,
                     int power, double measured) {
        const auto value = valueOf(occurrence, key);
        // Several are numbers of single bodies; which is which the name does not say.
        if (!value || valueOf(occurrence, key + " 2") || measured == 0.0) return;
        const auto expected = number(*value, unitMm, power);
        if (!expected) return;
        EXPECT_NEAR(measured / *expected, 1.0, kRelative) << key;
        ++checked_[key];
        if (std::abs(measured / *expected - 1.0) < kExact) ++exact_;
    }

    void checkCentroid(const HPS::Component& occurrence, double unitMm, const Sums& sums) {
        const auto value = valueOf(occurrence, "Validation Centroid");
        const bool single = occurrence.GetAllSubcomponents(Type::ProductOccurrence).size() == 1;
        if (!value || !single || sums.centroidsMm.size() != 1) return;
        std::array<double, 3> point = {};
        const std::string text = std::get<std::string>(value->value);
        ASSERT_EQ(std::sscanf(text.c_str(), "(%lf, %lf, %lf)", &point[0], &point[1], &point[2]), 3)
            << text;
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(sums.centroidsMm[0][i], point[i] * unitMm,
                        kRelative * std::cbrt(sums.volumeMm3) * 10)
                << text;
        }
        ++checked_["Validation Centroid"];
    }

    std::map<std::string, std::size_t> checked_;
    std::size_t exact_ = 0;
};

TEST_F(Validation, PropertiesOfFilesAgreeWithWhatIsMeasured) {
    SKIP_WITHOUT_REAL_DATA();
    for (const auto& file : data_test::stepFilesBelow({"A-revisions", "A-singles", "B-pmi"})) {
        SCOPED_TRACE(file);
        const auto read = import(file.string());
        ASSERT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;
        const double unitMm = read.model->unitMm();
        for (const HPS::Component& next :
             read.component.GetAllSubcomponents(Type::ProductOccurrence)) {
            SCOPED_TRACE(read.model->name(next.Id()));
            const Sums sums = sumsOf(read, next);
            checkNumber(next, "Validation Volume", unitMm, 3, sums.volumeMm3);
            checkNumber(next, "Validation Surface Area", unitMm, 2, sums.areaMm2);
            checkNumber(next, "Validation Wetted Area", unitMm, 2, sums.areaMm2);
            checkCentroid(next, unitMm, sums);
        }
    }
    EXPECT_GE(checked_["Validation Volume"], 40U);
    EXPECT_GE(checked_["Validation Surface Area"], 40U);
    EXPECT_GE(checked_["Validation Centroid"], 20U);
    EXPECT_GE(exact_, 9U);
    std::cerr << "[  NOTE    ] " << exact_ << " are exact\n";
    for (const auto& [key, count] : checked_) {
        std::cerr << "[  NOTE    ] " << key << ": " << count << " checked\n";
    }
}

}  // namespace
