#include "platform/hps/metadata.h"

#include "platform/hps/exception.h"

namespace HPS {
namespace {

constexpr std::uint32_t kSigned = 0x80001001;
constexpr std::uint32_t kUnsigned = 0x80001002;
constexpr std::uint32_t kFloating = 0x80001003;
constexpr std::uint32_t kString = 0x80001004;
constexpr std::uint32_t kTime = 0x80001005;
constexpr std::uint32_t kBoolean = 0x80001006;

constexpr std::uint32_t kTypeOfAlternative[] = {kString,   kSigned,  kUnsigned,
                                                kFloating, kBoolean, kTime};

Metadata onlyOfType(const Metadata& that, std::uint32_t type) {
    return that.Type() == type ? that : Metadata();
}

}  // namespace

std::uint32_t Metadata::Type() const {
    if (!value_) return 0;
    return value_->otherType != 0 ? value_->otherType : kTypeOfAlternative[value_->value.index()];
}

const MetadataValue& Metadata::Require(std::uint32_t type) const {
    if (Type() != type) throw InvalidObjectException("metadata is empty or of another kind");
    return *value_;
}

StringMetadata::StringMetadata(const Metadata& that) : Metadata(onlyOfType(that, kString)) {}
UTF8 StringMetadata::GetValue() const {
    return UTF8(std::get<std::string>(Require(kString).value));
}

IntegerMetadata::IntegerMetadata(const Metadata& that) : Metadata(onlyOfType(that, kSigned)) {}
std::int32_t IntegerMetadata::GetValue() const {
    return std::get<std::int32_t>(Require(kSigned).value);
}

UnsignedIntegerMetadata::UnsignedIntegerMetadata(const Metadata& that)
    : Metadata(onlyOfType(that, kUnsigned)) {}
std::uint32_t UnsignedIntegerMetadata::GetValue() const {
    return std::get<std::uint32_t>(Require(kUnsigned).value);
}

DoubleMetadata::DoubleMetadata(const Metadata& that) : Metadata(onlyOfType(that, kFloating)) {}
double DoubleMetadata::GetValue() const {
    return std::get<double>(Require(kFloating).value);
}

BooleanMetadata::BooleanMetadata(const Metadata& that) : Metadata(onlyOfType(that, kBoolean)) {}
bool BooleanMetadata::GetValue() const {
    return std::get<bool>(Require(kBoolean).value);
}

TimeMetadata::TimeMetadata(const Metadata& that) : Metadata(onlyOfType(that, kTime)) {}
Time TimeMetadata::GetValue() const {
    return std::get<Time>(Require(kTime).value);
}

}  // namespace HPS
