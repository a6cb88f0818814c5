#include "backends/occt/tree/unique_keys.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace occt {

void makeKeysUnique(std::vector<std::shared_ptr<const HPS::MetadataValue>>& values) {
    // How often a name was met; the number that its next one tries.
    std::unordered_map<std::string_view, std::size_t> met;
    met.reserve(values.size());
    for (const auto& value : values) met.emplace(value->name, 0);
    for (auto& value : values) {
        if (met[value->name]++ == 0) continue;
        std::size_t& number = met[value->name];
        HPS::MetadataValue renamed = *value;
        do {
            renamed.name = value->name + " " + std::to_string(number++);
        } while (met.count(renamed.name) != 0);
        --number;
        value = std::make_shared<const HPS::MetadataValue>(std::move(renamed));
    }
}

}  // namespace occt
