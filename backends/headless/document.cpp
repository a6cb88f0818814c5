#include "backends/headless/document.h"

namespace headless {

std::shared_ptr<bxtsg::Schema> SchemaMap::get(std::uint16_t code) const {
    const auto at = schemas_.find(code);
    return at == schemas_.end() ? nullptr : at->second;
}

void SchemaMap::attach(std::uint16_t code, std::shared_ptr<bxtsg::Schema> schema) {
    if (schema) {
        schemas_[code] = std::move(schema);
    } else {
        schemas_.erase(code);
    }
}

}  // namespace headless
