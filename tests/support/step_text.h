#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A reader of STEP text that shares no code with the import, so that tests can say from a file's
/// own words what the import must find, and can rewrite a file without changing what it means.
namespace support {

/// One line "#number=text;" of the data section, as written.
struct StepEntity {
    std::uint64_t number = 0;
    std::string text;  ///< between '=' and ';', comments and line feeds included
};

/// One product occurrence in the order in which the file lists its usages.
struct StepOccurrence {
    std::string name;          ///< of its product, apostrophes removed; its id when it has no name
    std::int32_t depth = 0;    ///< 0 for a product that nothing uses
    std::int32_t parent = -1;  ///< index in the same list
};

/// A file cut into its header, its entities and what follows them.
class StepText {
public:
    /// Empty when the text has no data section or an entity in it never ends.
    static std::optional<StepText> parse(std::string_view bytes);

    /// The file again: equal bytes are not promised, an equal meaning is.
    std::string write() const;

    /// How many entities have this type; a complex entity counts once for each of its types.
    std::size_t count(std::string_view type) const;

    /// All occurrences in pre-order, products without a user first to last. Follows at most
    /// `limit` occurrences, because a damaged file may describe endless ones.
    std::vector<StepOccurrence> occurrences(std::size_t limit = 1000000) const;

    std::string head;  ///< up to and including "DATA;"
    std::vector<StepEntity> entities;
    std::string tail;  ///< from "ENDSEC;" on
};

/// Types of an entity: one, or several for a complex one.
std::vector<std::string> entityTypes(std::string_view text);

/// Parameters at the top level of a simple entity, without blanks and comments around them.
std::vector<std::string> entityParameters(std::string_view text);

/// Numbers that the entity refers to, in order, repeats included.
std::vector<std::uint64_t> entityReferences(std::string_view text);

/// The same model with every entity renumbered and all of them in another order; both follow
/// from `seed` alone.
StepText renumberedAndShuffled(const StepText& text, std::uint64_t seed);

/// A sequence of numbers that is the same on every machine, unlike the standard distributions.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next();
    /// In [0, end).
    std::uint64_t below(std::uint64_t end) { return next() % end; }

private:
    std::uint64_t state_;
};

}  // namespace support
