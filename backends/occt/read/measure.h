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

/// Fills identity, closedness and digest of every item, several bodies at a time. `progress`
/// gets the share that is done, on the calling thread. A body that can't be measured keeps none.
void measureBodies(const std::vector<Measurement>& bodies,
                   const std::function<void(double)>& progress);

}  // namespace occt
