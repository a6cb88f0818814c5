#pragma once

#include <functional>
#include <vector>

#include <TopoDS_Shape.hxx>

#include "backends/occt/document/description.h"

namespace occt {

/// A body to measure and the item that takes the numbers.
struct Measurement {
    TopoDS_Shape shape;
    DescribedItem* item = nullptr;
};

/// Fills the digest of every item, and identity and closedness of every body among them, several
/// at a time. `progress` gets the share that is done, on the calling thread. What can't be
/// measured keeps none.
void measureBodies(const std::vector<Measurement>& bodies,
                   const std::function<void(double)>& progress);

}  // namespace occt
