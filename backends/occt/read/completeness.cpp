#include "backends/occt/read/completeness.h"

#include <algorithm>

namespace occt {
namespace {

struct Count {
    std::size_t declared = 0;
    std::size_t translated = 0;
};

Count countTranslated(const std::vector<std::uint64_t>& entities,
                      const StepTranslation& translation) {
    Count count;
    for (const std::uint64_t entity : entities) {
        ++count.declared;
        count.translated += translation.isTranslated(entity) ? 1 : 0;
    }
    return count;
}

void say(const Count& count, const char* what, std::vector<std::string>& gaps) {
    if (count.translated == count.declared) return;
    gaps.push_back(std::to_string(count.translated) + " of " + std::to_string(count.declared) +
                   " " + what + " were translated.");
}

/// Entities of the given types, each once, in the order of their numbers.
std::vector<std::uint64_t> entitiesOf(const step::Part21& file,
                                      std::initializer_list<const char*> types) {
    std::vector<std::uint64_t> out;
    for (const char* type : types) {
        for (const std::uint32_t index : file.ofType(type)) {
            out.push_back(file.instances()[index].id);
        }
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

/// Faces that shells list, and faces that stand in the file.
std::vector<std::uint64_t> faces(const step::Part21& file) {
    std::vector<std::uint64_t> out = entitiesOf(file, {"ADVANCED_FACE", "FACE_SURFACE"});
    for (const char* type : {"CLOSED_SHELL", "OPEN_SHELL"}) {
        for (const std::uint32_t index : file.ofType(type)) {
            for (const step::Record& record : file.read(file.instances()[index])) {
                if (record.keyword != type) continue;
                for (const step::Value& face : record.at(1).items) {
                    if (face.isReference()) out.push_back(face.reference);
                }
            }
        }
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

}  // namespace

std::vector<std::string> translationGaps(const step::Part21& file,
                                         const StepTranslation& translation) {
    std::vector<std::string> gaps;
    say(countTranslated(entitiesOf(file, {"MANIFOLD_SOLID_BREP", "BREP_WITH_VOIDS", "FACETED_BREP",
                                          "SHELL_BASED_SURFACE_MODEL", "FACE_BASED_SURFACE_MODEL"}),
                        translation),
        "bodies", gaps);
    say(countTranslated(faces(file), translation), "faces", gaps);
    return gaps;
}

}  // namespace occt
