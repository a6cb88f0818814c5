#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/pmi_measure.h"

namespace occt::step {

/// What a dimension says.
struct DimensionText {
    std::string kind;            ///< "Diameter", "Linear distance", "Angular size"
    std::string text;            ///< one line; empty for a dimension without a value
    std::vector<double> values;  ///< nominal value and limits, in the file's units
};

/// Reads sizes, distances and angles with their deviations, limits, fits and notes. `file` and
/// `measures` must outlive it.
class DimensionReader {
public:
    DimensionReader(const Part21& file, const MeasureReader& measures);

    /// Keywords of all dimensions of the file.
    static bool isDimension(std::string_view keyword);

    /// `records`: what stands in the file for the dimension `id`; lengths of its part are
    /// `partUnitMm` long.
    DimensionText read(std::uint64_t id, const std::vector<Record>& records,
                       double partUnitMm) const;

private:
    struct Parts;

    void readItems(std::uint64_t representation, Parts& parts) const;
    void readItem(std::uint64_t item, Parts& parts) const;
    void readNote(const Record& record, Parts& parts) const;
    std::string deviations(std::uint64_t id, double partUnitMm) const;
    std::string value(std::uint64_t id, const Parts& parts, double partUnitMm) const;

    const Part21& file_;
    const MeasureReader& measures_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> representations_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> deviations_;
};

}  // namespace occt::step
