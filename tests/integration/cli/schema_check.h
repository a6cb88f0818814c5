#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace support {

/// Holds a JSON value against a schema and says where they part; empty when they agree. Knows the
/// keywords type, const, enum, required, properties, additionalProperties: false, items,
/// minItems, maxItems, minimum and $ref into #/$defs. Any other keyword that restricts values is
/// reported too: a schema must not promise what nobody checks.
std::vector<std::string> schemaErrors(const nlohmann::json& schema, const nlohmann::json& value);

}  // namespace support
