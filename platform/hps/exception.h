#pragma once

#include <stdexcept>

namespace HPS {

/// What the scene library throws.
class Exception : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An operation on a handle that refers to nothing, or to an object of another kind.
class InvalidObjectException : public Exception {
public:
    using Exception::Exception;
};

/// An element past the end of an array that the library handed out.
class IndexOutOfRangeException : public Exception {
public:
    using Exception::Exception;
};

}  // namespace HPS
