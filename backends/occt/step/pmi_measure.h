#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"

namespace occt::step {

/// A number with its unit, as a dimension or tolerance holds it.
struct Measure {
    double value = 0.0;  ///< in its own unit; always finite
    std::uint64_t unit = 0;
    std::string name;        ///< of the item, in small letters: "nominal value", "upper limit", ...
    int decimals = -1;       ///< that a writer asks for; negative without a wish
    std::string qualifiers;  ///< "MAX", "MIN", "AVG"; empty as a rule
};

/// Reads measures and writes them as drawings do. `file` must outlive it; not from two threads.
class MeasureReader {
public:
    explicit MeasureReader(const Part21& file);

    /// Measure of an instance; nothing when it is none or its number is not finite.
    std::optional<Measure> read(std::uint64_t id) const;

    /// Its text. A length in another unit than the part's (`partUnitMm` long) is followed by its
    /// unit, an angle always.
    std::string text(const Measure& measure, double partUnitMm) const;
    /// The same with a sign in front, a plus too.
    std::string signedText(const Measure& measure, double partUnitMm) const;

private:
    struct Unit {
        double lengthMm = 0.0;  ///< 0 for what is no length
        std::string symbol;     ///< with the blank before it, if one belongs there
    };

    const Unit& unitOf(std::uint64_t id) const;
    void qualify(Measure& measure, std::uint64_t qualifier) const;

    const Part21& file_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> qualifications_;
    mutable std::unordered_map<std::uint64_t, Unit> units_;
};

}  // namespace occt::step
