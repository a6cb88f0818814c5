#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <TopoDS_Shape.hxx>

#include "backends/occt/document/description.h"
#include "backends/occt/read/step_translation.h"
#include "backends/occt/step/part21.h"

namespace occt {

/// A representation item with a name that says something.
struct NamedItem {
    std::uint64_t entity = 0;
    std::string name;
};

/// All that the names of bodies may come from; what stands earlier goes first.
std::vector<NamedItem> namedItems(const step::Part21& file);

/// Names that a file gives its representation items.
class ItemNames {
public:
    ItemNames(const step::Part21& file, const StepTranslation& translation);

    /// Name of the item that the shape came of; empty when it has none that says anything.
    const std::string& of(const TopoDS_Shape& shape) const;

private:
    std::unordered_map<const void*, std::string> names_;
};

/// Whether an item's name is more than filling.
bool saysSomething(const std::string& name);

/// Gives unnamed items a fixed word and makes all names of a part differ by a number.
void makeUnique(std::vector<DescribedItem>& items);

}  // namespace occt
