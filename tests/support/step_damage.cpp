#include "tests/support/step_damage.h"

#include <vector>

namespace support {

std::string truncated(std::string_view bytes, unsigned percent) {
    return std::string(bytes.substr(0, bytes.size() * percent / 100));
}

std::string withFlippedBits(std::string_view bytes, std::size_t count, std::uint64_t seed) {
    std::string spoiled(bytes);
    Dice dice(seed);
    for (std::size_t i = 0; i < count && !spoiled.empty(); ++i) {
        char& byte = spoiled[dice.below(spoiled.size())];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << dice.below(8)));
    }
    return spoiled;
}

std::string withCoordinate(const StepText& text, std::string_view number, std::size_t count,
                           std::uint64_t seed) {
    StepText spoiled = text;
    std::vector<StepEntity*> points;
    for (StepEntity& entity : spoiled.entities) {
        const auto types = entityTypes(entity.text);
        if (types.size() == 1 && types.front() == "CARTESIAN_POINT") points.push_back(&entity);
    }
    Dice dice(seed);
    for (std::size_t i = 0; i < count && !points.empty(); ++i) {
        std::string& point = points[dice.below(points.size())]->text;
        const auto parameters = entityParameters(point);
        if (parameters.size() != 2) continue;
        const std::string& triple = parameters[1];
        const std::size_t comma = triple.find(',');
        if (comma == std::string::npos) continue;
        point = "CARTESIAN_POINT(" + parameters[0] + ",(" + std::string(number) +
                triple.substr(comma) + ")";
    }
    return spoiled.write();
}

std::string withWrongReferences(const StepText& text, std::size_t count, std::uint64_t seed) {
    StepText spoiled = text;
    Dice dice(seed);
    const std::size_t entities = spoiled.entities.size();
    for (std::size_t i = 0; i < count && entities > 0; ++i) {
        std::string& victim = spoiled.entities[dice.below(entities)].text;
        const auto references = entityReferences(victim);
        const std::uint64_t wrong =
            dice.below(4) == 0 ? 999999999 : spoiled.entities[dice.below(entities)].number;
        if (references.empty()) continue;
        const std::string old = "#" + std::to_string(references[dice.below(references.size())]);
        const std::size_t at = victim.find(old);
        if (at != std::string::npos) victim.replace(at, old.size(), "#" + std::to_string(wrong));
    }
    return spoiled.write();
}

}  // namespace support
