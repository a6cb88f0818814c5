#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

#include "platform/hps/component_provider.h"

namespace HPS {

class ComponentArray;

/// Small value handle to one component of an imported model. Keeps the model alive.
/// All operations except Empty() throw HPS::InvalidObjectException on an empty handle.
class Component {
public:
    Component() = default;
    Component(std::shared_ptr<const ComponentProvider> provider, ComponentId id)
        : provider_(std::move(provider)), id_(id) {}
    virtual ~Component() = default;
    Component(const Component&) = default;
    Component(Component&&) noexcept = default;
    Component& operator=(const Component&) = default;
    Component& operator=(Component&&) noexcept = default;

    bool Empty() const { return !provider_; }
    bool operator==(const Component& that) const {
        return provider_ == that.provider_ && (Empty() || id_ == that.id_);
    }

    std::uint32_t GetComponentType() const;
    UTF8 GetName() const;

    /// Direct subcomponents in model order.
    ComponentArray GetSubcomponents() const;

    /// All components of a type (exact code or mask, see component_type.h) at any depth, this
    /// one first when it is of that type itself. Asking the result for its size is cheap; the
    /// walk happens when an element is first read.
    ComponentArray GetAllSubcomponents(std::uint32_t type) const;

    /// Components above this one, nearest first.
    ComponentArray GetOwners() const;

    /// Metadata of that key, compared exactly; the first one of several. Empty when absent.
    Metadata GetMetadata(const char* key) const;

    /// All metadata in model order, duplicate keys included.
    std::vector<Metadata> GetAllMetadata() const;

    const std::shared_ptr<const ComponentProvider>& Provider() const { return provider_; }
    ComponentId Id() const { return id_; }

protected:
    /// Provider, or HPS::InvalidObjectException when empty.
    const ComponentProvider& Require() const;

private:
    std::shared_ptr<const ComponentProvider> provider_;
    ComponentId id_ = 0;
};

/// Components that one question answered, in order. Filled on first access to an element, which
/// makes questions that only count cheap.
class ComponentArray {
public:
    enum class Question { Children, AllOfType, Owners };

    ComponentArray() = default;
    ComponentArray(Component subject, Question question, std::uint32_t type = 0)
        : subject_(std::move(subject)), question_(question), type_(type) {}

    std::size_t size() const;
    bool empty() const { return size() == 0; }
    /// Throws HPS::IndexOutOfRangeException past the end.
    Component operator[](std::size_t index) const;

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Component;
        using difference_type = std::ptrdiff_t;
        using pointer = const Component*;
        using reference = Component;

        Iterator(const ComponentArray* array, std::size_t index) : array_(array), index_(index) {}
        Component operator*() const { return (*array_)[index_]; }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        bool operator==(const Iterator& that) const { return index_ == that.index_; }

    private:
        const ComponentArray* array_;
        std::size_t index_;
    };

    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, size()}; }

private:
    const std::vector<ComponentId>& ids() const;

    Component subject_;
    Question question_ = Question::Children;
    std::uint32_t type_ = 0;
    mutable std::vector<ComponentId> ids_;
    mutable bool filled_ = false;
};

/// An imported model; its component is the model file.
class CADModel : public Component {
public:
    CADModel() = default;
    explicit CADModel(const std::shared_ptr<const ComponentProvider>& provider)
        : Component(provider, provider ? provider->root() : 0) {}
};

namespace Exchange {

/// A component in the form that the exchange library takes.
class Component : public HPS::Component {
public:
    Component() = default;
    explicit Component(const HPS::Component& that) : HPS::Component(that) {}

    /// Handle for the physical-property functions; null when the component has none.
    const void* GetExchangeEntity() const;
};

}  // namespace Exchange
}  // namespace HPS
