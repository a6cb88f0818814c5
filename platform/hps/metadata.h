#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "platform/hps/utf8.h"

namespace HPS {

/// Seconds since 1970-01-01 00:00 UTC.
struct Time {
    std::uint64_t secondsSinceEpoch = 0;
};

/// One named value of a component, as a provider hands it out. Alternatives in the order
/// string, signed, unsigned, floating, boolean, time.
struct MetadataValue {
    std::string name;  ///< UTF-8
    std::variant<std::string, std::int32_t, std::uint32_t, double, bool, Time> value;
    /// Type code of a kind that has no typed view; `value` is then not looked at. 0 for the six
    /// kinds that have one.
    std::uint32_t otherType = 0;
};

/// Handle to one metadata object; empty when the component has no such key.
class Metadata {
public:
    Metadata() = default;
    explicit Metadata(std::shared_ptr<const MetadataValue> value) : value_(std::move(value)) {}

    bool Empty() const { return !value_; }

    /// 0x80001001 signed, ...1002 unsigned, ...1003 floating, ...1004 string, ...1005 time,
    /// ...1006 boolean, another number for a kind without a typed view; 0 for an empty handle.
    std::uint32_t Type() const;

    UTF8 GetName() const { return UTF8(value_ ? value_->name : std::string()); }

protected:
    /// Throws HPS::InvalidObjectException when the handle is empty or holds another kind.
    const MetadataValue& Require(std::uint32_t type) const;

private:
    std::shared_ptr<const MetadataValue> value_;
};

/// Typed views. Construction from another kind gives an empty handle, and GetValue() of an
/// empty handle throws HPS::InvalidObjectException.
class StringMetadata : public Metadata {
public:
    StringMetadata() = default;
    explicit StringMetadata(const Metadata& that);
    UTF8 GetValue() const;
};

class IntegerMetadata : public Metadata {
public:
    IntegerMetadata() = default;
    explicit IntegerMetadata(const Metadata& that);
    std::int32_t GetValue() const;
};

class UnsignedIntegerMetadata : public Metadata {
public:
    UnsignedIntegerMetadata() = default;
    explicit UnsignedIntegerMetadata(const Metadata& that);
    std::uint32_t GetValue() const;
};

class DoubleMetadata : public Metadata {
public:
    DoubleMetadata() = default;
    explicit DoubleMetadata(const Metadata& that);
    double GetValue() const;
};

class BooleanMetadata : public Metadata {
public:
    BooleanMetadata() = default;
    explicit BooleanMetadata(const Metadata& that);
    bool GetValue() const;
};

class TimeMetadata : public Metadata {
public:
    TimeMetadata() = default;
    explicit TimeMetadata(const Metadata& that);
    Time GetValue() const;
};

}  // namespace HPS
