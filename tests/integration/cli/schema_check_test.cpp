#include "tests/integration/cli/schema_check.h"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;
using support::schemaErrors;

TEST(SchemaCheck, FindsEveryKindOfDisagreement) {
    const json schema = json::parse(R"({
        "type": "object", "additionalProperties": false, "required": ["a"],
        "properties": {
            "a": {"$ref": "#/$defs/n"},
            "b": {"type": "array", "items": {"enum": ["x", "y"]}, "minItems": 1, "maxItems": 2},
            "c": {"const": 1}},
        "$defs": {"n": {"type": ["integer", "null"], "minimum": 0}}})");
    for (const char* good : {R"({"a": 1})", R"({"a": null, "b": ["x"], "c": 1})"}) {
        EXPECT_TRUE(schemaErrors(schema, json::parse(good)).empty()) << good;
    }
    for (const char* bad :
         {"[]", "{}", R"({"a": "1"})", R"({"a": 1.5})", R"({"a": -1})", R"({"a": 1, "b": []})",
          R"({"a": 1, "b": ["x", "y", "x"]})", R"({"a": 1, "b": ["z"]})", R"({"a": 1, "c": 2})",
          R"({"a": 1, "d": 1})"}) {
        EXPECT_EQ(schemaErrors(schema, json::parse(bad)).size(), 1U) << bad;
    }
}

TEST(SchemaCheck, ReportsKeywordsThatItDoesNotCheck) {
    EXPECT_EQ(schemaErrors(json::parse(R"({"pattern": "a"})"), "b").size(), 1U);
}

}  // namespace
