#include "tests/integration/cli/schema_check.h"

#include <algorithm>
#include <set>

namespace support {
namespace {

using nlohmann::json;

class Checker {
public:
    explicit Checker(const json& root) : root_(root) {}

    void check(const json& schema, const json& value, const std::string& where) {
        checkKeywords(schema, where);
        if (schema.contains("$ref")) {
            const std::string name = schema["$ref"].get<std::string>().substr(8);  // "#/$defs/"
            check(root_["$defs"].at(name), value, where);
        }
        if (schema.contains("type") && !hasType(schema["type"], value)) {
            fail(where, "is no " + schema["type"].dump());
            return;
        }
        if (schema.contains("const") && value != schema["const"])
            fail(where, "is not the constant");
        if (schema.contains("enum") && !listed(schema["enum"], value)) {
            fail(where, value.dump() + " is not in the list");
        }
        if (schema.contains("minimum") && value.is_number() && value < schema["minimum"]) {
            fail(where, "is too small");
        }
        if (value.is_object()) checkObject(schema, value, where);
        if (value.is_array()) checkArray(schema, value, where);
    }

    std::vector<std::string> errors;

private:
    void fail(const std::string& where, const std::string& what) {
        errors.push_back(where + " " + what);
    }

    void checkKeywords(const json& schema, const std::string& where) {
        static const std::set<std::string> known = {
            "$schema",  "title",    "description", "$defs",      "$ref",
            "type",     "const",    "enum",        "required",   "items",
            "minItems", "maxItems", "minimum",     "properties", "additionalProperties"};
        for (const auto& [keyword, ignored] : schema.items()) {
            if (!known.contains(keyword)) fail(where, "has the unknown keyword " + keyword);
        }
    }

    static bool listed(const json& list, const json& value) {
        return std::find(list.begin(), list.end(), value) != list.end();
    }

    static bool isOfType(const std::string& type, const json& value) {
        if (type == "integer") return value.is_number_integer();
        if (type == "number") return value.is_number();
        return type == value.type_name();
    }

    static bool hasType(const json& type, const json& value) {
        if (type.is_string()) return isOfType(type, value);
        return std::any_of(type.begin(), type.end(),
                           [&](const json& one) { return isOfType(one, value); });
    }

    void checkObject(const json& schema, const json& value, const std::string& where) {
        for (const json& name : schema.value("required", json::array())) {
            if (!value.contains(name)) fail(where, "lacks " + name.get<std::string>());
        }
        const json properties = schema.value("properties", json::object());
        for (const auto& [name, member] : value.items()) {
            if (properties.contains(name)) {
                check(properties[name], member, where + "." + name);
            } else if (schema.contains("additionalProperties")) {
                fail(where, "has the undescribed member " + name);
            }
        }
    }

    void checkArray(const json& schema, const json& value, const std::string& where) {
        if (value.size() < schema.value("minItems", std::size_t{0})) fail(where, "is too short");
        if (value.size() > schema.value("maxItems", value.size())) fail(where, "is too long");
        if (!schema.contains("items")) return;
        for (std::size_t i = 0; i < value.size(); ++i) {
            check(schema["items"], value[i], where + "[" + std::to_string(i) + "]");
        }
    }

    const json& root_;
};

}  // namespace

std::vector<std::string> schemaErrors(const json& schema, const json& value) {
    Checker checker(schema);
    checker.check(schema, value, "$");
    return checker.errors;
}

}  // namespace support
