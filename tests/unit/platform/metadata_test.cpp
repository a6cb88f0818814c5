#include "platform/hps/metadata.h"

#include <gtest/gtest.h>

#include "platform/hps/exception.h"

namespace {

template <typename Value>
HPS::Metadata make(Value value) {
    return HPS::Metadata(
        std::make_shared<const HPS::MetadataValue>(HPS::MetadataValue{"key", value}));
}

TEST(Metadata, TellsItsKind) {
    EXPECT_EQ(make(std::int32_t{-1}).Type(), 0x80001001U);
    EXPECT_EQ(make(std::uint32_t{1}).Type(), 0x80001002U);
    EXPECT_EQ(make(1.5).Type(), 0x80001003U);
    EXPECT_EQ(make(std::string("x")).Type(), 0x80001004U);
    EXPECT_EQ(make(HPS::Time{1}).Type(), 0x80001005U);
    EXPECT_EQ(make(true).Type(), 0x80001006U);
    EXPECT_EQ(HPS::Metadata().Type(), 0U);
}

TEST(Metadata, AKindWithoutATypedViewGivesItsNumberAndNoValue) {
    const HPS::Metadata other(std::make_shared<const HPS::MetadataValue>(
        HPS::MetadataValue{"key", std::string("x"), 0x80001042}));
    EXPECT_EQ(other.Type(), 0x80001042U);
    EXPECT_FALSE(other.Empty());
    EXPECT_EQ(other.GetName().GetBytes(), "key");
    EXPECT_TRUE(HPS::StringMetadata(other).Empty());
}

TEST(Metadata, GivesItsNameAndValue) {
    EXPECT_EQ(make(1.5).GetName().GetBytes(), "key");
    EXPECT_EQ(HPS::StringMetadata(make(std::string("x"))).GetValue().GetBytes(), "x");
    EXPECT_EQ(HPS::IntegerMetadata(make(std::int32_t{-7})).GetValue(), -7);
    EXPECT_EQ(HPS::UnsignedIntegerMetadata(make(std::uint32_t{7})).GetValue(), 7U);
    EXPECT_EQ(HPS::DoubleMetadata(make(1.5)).GetValue(), 1.5);
    EXPECT_TRUE(HPS::BooleanMetadata(make(true)).GetValue());
    EXPECT_EQ(HPS::TimeMetadata(make(HPS::Time{86400})).GetValue().secondsSinceEpoch, 86400U);
}

TEST(Metadata, EmptyHandleHasNoNameAndThrowsForItsValue) {
    EXPECT_TRUE(HPS::Metadata().Empty());
    EXPECT_TRUE(HPS::Metadata().GetName().Empty());
    EXPECT_THROW(HPS::StringMetadata().GetValue(), HPS::InvalidObjectException);
    EXPECT_THROW(HPS::IntegerMetadata().GetValue(), HPS::InvalidObjectException);
    EXPECT_THROW(HPS::UnsignedIntegerMetadata().GetValue(), HPS::InvalidObjectException);
    EXPECT_THROW(HPS::DoubleMetadata().GetValue(), HPS::InvalidObjectException);
    EXPECT_THROW(HPS::BooleanMetadata().GetValue(), HPS::InvalidObjectException);
    EXPECT_THROW(HPS::TimeMetadata().GetValue(), HPS::InvalidObjectException);
}

TEST(Metadata, AnotherKindGivesAnEmptyView) {
    const HPS::Metadata all[] = {make(std::int32_t{1}),  make(std::uint32_t{1}), make(1.0),
                                 make(std::string("1")), make(HPS::Time{1}),     make(true)};
    for (const HPS::Metadata& value : all) {
        EXPECT_EQ(HPS::IntegerMetadata(value).Empty(), value.Type() != 0x80001001U);
        EXPECT_EQ(HPS::UnsignedIntegerMetadata(value).Empty(), value.Type() != 0x80001002U);
        EXPECT_EQ(HPS::DoubleMetadata(value).Empty(), value.Type() != 0x80001003U);
        EXPECT_EQ(HPS::StringMetadata(value).Empty(), value.Type() != 0x80001004U);
        EXPECT_EQ(HPS::TimeMetadata(value).Empty(), value.Type() != 0x80001005U);
        EXPECT_EQ(HPS::BooleanMetadata(value).Empty(), value.Type() != 0x80001006U);
    }
    EXPECT_THROW(HPS::StringMetadata(make(1.0)).GetValue(), HPS::InvalidObjectException);
}

}  // namespace
