#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/edits/edits.h"

namespace edits {

/// What the comparer made of one edit.
struct Score {
    bool verdictRight = false;  ///< the states of all instances, and what is known of a motion
    bool deviationRight = true;
    bool sentenceRight = true;
    std::size_t found = 0;   ///< changed faces that were called so, of both sides
    std::size_t missed = 0;  ///< changed faces that were called unchanged
    std::size_t wrong = 0;   ///< unchanged faces that were called changed
    std::string complaint;   ///< for a reader; empty when all is right
};

Score score(const Edit& edit);

/// Sums over edits of one kind.
struct Tally {
    std::size_t edits = 0;
    std::size_t verdictsRight = 0;
    std::size_t deviations = 0;
    std::size_t deviationsRight = 0;
    std::size_t sentences = 0;
    std::size_t sentencesRight = 0;
    std::size_t found = 0;
    std::size_t missed = 0;
    std::size_t wrong = 0;

    void add(const Edit& edit, const Score& score);
    void add(const Tally& other);
    double precision() const;  ///< 1 when nothing was called changed
    double recall() const;     ///< 1 when nothing was changed
    bool allRight() const;
};

/// One line per kind and one for all.
std::string table(const std::vector<Tally>& kinds);

}  // namespace edits
