#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace mesh {

/// Gives equal points equal numbers, in the order in which they first come. Equal means the same
/// bits once -0 is 0: nothing is merged by nearness, so that a revision can't change what is one
/// point elsewhere. `Real` is float or double.
template <typename Real>
class Welder {
public:
    using Key = std::array<Real, 3>;

    /// `expected` points are a hint; more may come.
    explicit Welder(std::size_t expected) {
        std::size_t slots = 64;
        while (slots < expected * 2) slots *= 2;
        slots_.resize(slots);
        points_.reserve(expected);
    }

    /// A point as it is looked for. Made some time before it is needed, it lets the memory that
    /// the look-up touches arrive meanwhile.
    struct Query {
        Key point;
        std::uint64_t hash;
    };
    Query prepare(Real x, Real y, Real z) const {
        // Adding 0 turns -0 into 0.
        const Query query = {{x + Real(0), y + Real(0), z + Real(0)}, 0};
        const std::uint64_t hash = hashOf(query.point);
        __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
        return {query.point, hash};
    }

    std::uint32_t number(const Query& query) {
        const std::size_t mask = slots_.size() - 1;
        const auto tag = static_cast<std::uint32_t>(query.hash >> 32);
        for (std::size_t at = query.hash & mask;; at = (at + 1) & mask) {
            const Slot slot = slots_[at];
            if (slot.number == 0) return insert(at, tag, query);
            // By bits: what is no number equals nothing, and many of them would lie in one heap.
            const bool same = slot.tag == tag && std::memcmp(&points_[slot.number - 1],
                                                             &query.point, sizeof(Key)) == 0;
            if (same) return slot.number - 1;
        }
    }

    std::uint32_t number(Real x, Real y, Real z) { return number(prepare(x, y, z)); }

    const std::vector<Key>& points() const { return points_; }

private:
    struct Slot {
        std::uint32_t number = 0;  ///< of the point, from 1
        std::uint32_t tag = 0;     ///< the upper half of its hash
    };

    static std::uint64_t hashOf(const Key& point) {
        std::uint64_t hash = 0;
        for (const Real coordinate : point) {
            std::uint64_t bits = 0;
            std::memcpy(&bits, &coordinate, sizeof coordinate);
            hash = (std::rotl(hash, 23) ^ bits) * 0x9E3779B97F4A7C15ULL;
        }
        hash ^= hash >> 32;
        hash *= 0xD6E8FEB86659FD93ULL;
        return hash ^ (hash >> 29);
    }

    std::uint32_t insert(std::size_t at, std::uint32_t tag, const Query& query) {
        points_.push_back(query.point);
        const auto number = static_cast<std::uint32_t>(points_.size());
        slots_[at] = {number, tag};
        if (points_.size() * 2 > slots_.size()) grow();
        return number - 1;
    }

    void grow() {
        std::vector<Slot> wider(slots_.size() * 2);
        const std::size_t mask = wider.size() - 1;
        for (std::uint32_t i = 0; i < points_.size(); ++i) {
            const std::uint64_t hash = hashOf(points_[i]);
            std::size_t at = hash & mask;
            while (wider[at].number != 0) at = (at + 1) & mask;
            wider[at] = {i + 1, static_cast<std::uint32_t>(hash >> 32)};
        }
        slots_.swap(wider);
    }

    std::vector<Slot> slots_;
    std::vector<Key> points_;
};

}  // namespace mesh
