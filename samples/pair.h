#pragma once

#include <string>

namespace samples {

struct PairOptions {
    /// Leaf occurrences per file.
    int occurrences = 2000;
    /// Distinct parts; 0: 200, or what `sizeMb` asks for.
    int parts = 0;
    /// Wanted size of each file in megabytes (10^6 bytes), good to about 10 %; 0: don't care.
    double sizeMb = 0.0;
    std::string folder;
};

/// Leaf occurrences of the reference file by what the compare file does to them.
struct PairTruth {
    int unchanged = 0;
    int moved = 0;
    int changed = 0;
    int deleted = 0;
    int added = 0;  ///< only in the compare file
};

/// Writes `pair_<occurrences>_reference.step` and `..._compare.step` into the folder: a plant of
/// modules of units of plates, each plate different. In the compare file every tenth plate has a
/// larger hole, one unit of every second module stands higher, the last part that stands
/// directly in the plant is gone, and two spare plates are new. False on failure.
bool writePair(const PairOptions& options, PairTruth& truth, std::string& error);

}  // namespace samples
