#pragma once

#include <stdexcept>

namespace HPS {

/// What the scene library throws.
class Exception : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace HPS
