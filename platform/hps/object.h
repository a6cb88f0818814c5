#pragma once

#include <cstdint>

namespace HPS {

/// Root of the scene library's polymorphic objects.
class Object {
public:
    virtual ~Object() = default;
    /// Number that tells the kind of the object.
    virtual std::uint32_t ObjectType() const { return 0; }
    /// True when the object refers to nothing.
    virtual bool Empty() const { return false; }
    /// Lets go of what the object refers to.
    virtual void Reset() {}
};

/// Receiver of scene events. The plug-in takes part in the hierarchy and handles none.
class EventHandler : public Object {
public:
    virtual std::uint32_t Type() const { return 0; }
};

}  // namespace HPS
