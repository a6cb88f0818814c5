#pragma once

#include <memory>
#include <string>

#include "platform/hps/import.h"

namespace HPS {

/// What stands behind File::Import.
class Importer {
public:
    virtual ~Importer() = default;
    /// See File::Import. Never null.
    virtual std::shared_ptr<Exchange::ImportTask> start(const std::string& path,
                                                        const Exchange::ImportOptions& options) = 0;
};

/// What the application puts behind this folder's static calls.
struct Services {
    std::shared_ptr<Importer> importer;
};

Services& services();

}  // namespace HPS
