#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/pmi_measure.h"

namespace occt::step {

/// What a geometric tolerance, a datum or a datum target says.
struct ToleranceText {
    std::string kind;            ///< "Flatness", "Datum", "Datum target"
    std::string text;            ///< one line
    std::vector<double> values;  ///< in the file's units
};

/// Reads tolerance frames with zones, modifiers and datums. `file` and `measures` must outlive
/// it; not from two threads.
class ToleranceReader {
public:
    ToleranceReader(const Part21& file, const MeasureReader& measures);

    /// Keywords of geometric tolerances, of the kinds as well as of the general one.
    static bool isTolerance(std::string_view keyword);
    static bool isDatum(std::string_view keyword);
    static bool isDatumTarget(std::string_view keyword);

    /// `records`: what stands in the file for the tolerance `id`; lengths of its part are
    /// `partUnitMm` long.
    ToleranceText tolerance(std::uint64_t id, const std::vector<Record>& records,
                            double partUnitMm) const;
    /// The text is the datum's letter; empty for a datum without one.
    ToleranceText datum(const std::vector<Record>& records) const;
    ToleranceText datumTarget(std::uint64_t id, const std::vector<Record>& records,
                              double partUnitMm) const;

    /// Datums that a feature or target stands for, by the relations between them.
    const std::vector<std::uint64_t>& datumsOf(std::uint64_t aspect) const;

private:
    struct Frame;
    struct Zone {
        std::string_view prefix;
        std::uint64_t projection = 0;  ///< length of a projected zone, 0 without one
    };

    void linkZones();
    void linkDatums();
    void linkTargets();
    void readPart(const Record& record, Frame& frame) const;
    std::string unitArea(const Frame& frame, double partUnitMm) const;
    std::string zone(std::uint64_t id, double partUnitMm, std::string& projection) const;
    std::string frameText(std::uint64_t id, const Frame& frame, double partUnitMm) const;
    std::string measure(std::uint64_t id, double partUnitMm) const;
    std::string letters(const Value& references) const;
    std::string letter(std::uint64_t datum) const;
    std::string base(const Value& value) const;
    std::string modifiers(const Value& list) const;
    const std::string& system(std::uint64_t id) const;

    const Part21& file_;
    const MeasureReader& measures_;
    std::unordered_map<std::uint64_t, std::vector<Zone>> zones_;  ///< by tolerance
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> datums_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> targetItems_;
    mutable std::unordered_map<std::uint64_t, std::string> systems_;
};

}  // namespace occt::step
