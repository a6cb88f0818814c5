#include "platform/hps/component.h"

#include <cstring>

#include "platform/hps/exception.h"

namespace HPS {

const ComponentProvider& Component::Require() const {
    if (!provider_) throw InvalidObjectException("operation on an empty component");
    return *provider_;
}

std::uint32_t Component::GetComponentType() const {
    return Require().type(id_);
}

UTF8 Component::GetName() const {
    return UTF8(Require().name(id_));
}

ComponentArray Component::GetSubcomponents() const {
    Require();
    return {*this, ComponentArray::Question::Children};
}

ComponentArray Component::GetAllSubcomponents(std::uint32_t type) const {
    Require();
    return {*this, ComponentArray::Question::AllOfType, type};
}

ComponentArray Component::GetOwners() const {
    Require();
    return {*this, ComponentArray::Question::Owners};
}

Metadata Component::GetMetadata(const char* key) const {
    for (auto& value : Require().metadata(id_)) {
        if (value->name == key) return Metadata(std::move(value));
    }
    return {};
}

std::vector<Metadata> Component::GetAllMetadata() const {
    std::vector<Metadata> all;
    for (auto& value : Require().metadata(id_)) all.emplace_back(std::move(value));
    return all;
}

std::size_t ComponentArray::size() const {
    if (subject_.Empty()) return 0;
    const ComponentProvider& provider = *subject_.Provider();
    switch (question_) {
        case Question::Children: return provider.childCount(subject_.Id());
        case Question::AllOfType: return provider.countAll(subject_.Id(), type_);
        case Question::Owners: return ids().size();
    }
    return 0;
}

Component ComponentArray::operator[](std::size_t index) const {
    if (index >= size()) throw IndexOutOfRangeException("component index");
    const auto& provider = subject_.Provider();
    if (question_ == Question::Children) {
        return {provider, provider->child(subject_.Id(), index)};
    }
    return {provider, ids().at(index)};
}

const std::vector<ComponentId>& ComponentArray::ids() const {
    if (!filled_) {
        const ComponentProvider& provider = *subject_.Provider();
        if (question_ == Question::Owners) {
            ids_ = provider.owners(subject_.Id());
        } else {
            provider.collectAll(subject_.Id(), type_, ids_);
        }
        filled_ = true;
    }
    return ids_;
}

namespace Exchange {

const void* Component::GetExchangeEntity() const {
    return Require().exchangeEntity(Id());
}

}  // namespace Exchange
}  // namespace HPS
