#include "tests/torture/bases.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "tests/torture/archive.h"
#include "tests/torture/damage.h"
#include "tests/torture/generated.h"

namespace torture {
namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string lowered(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

bool looksLikeText(const std::string& bytes) {
    const std::string head = bytes.substr(0, 4096);
    return std::ranges::none_of(head, [](char c) { return c >= 0 && c < 9; });
}

/// The kind of a real file; empty for one that none of ours reads.
std::string kindOf(const std::string& extension, const std::string& bytes) {
    static const std::map<std::string, std::string> kinds = {
        {"step", "step"}, {"stp", "step"}, {"igs", "iges"}, {"iges", "iges"},
        {"brep", "brep"}, {"stl", "stl"},  {"obj", "obj"},  {"ply", "ply"},
        {"gltf", "gltf"}, {"glb", "glb"},  {"3mf", "3mf"},  {"xbf", "xbf"}};
    const auto found = kinds.find(extension);
    if (found == kinds.end()) return {};
    const bool both = found->second == "stl" || found->second == "ply";
    return both && !looksLikeText(bytes) ? found->second + " binary" : found->second;
}

void addFile(const fs::path& path, std::size_t largestBytes, std::vector<Base>& bases) {
    std::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) > largestBytes) return;
    std::string extension = path.extension().string();
    if (extension.empty()) return;
    extension = extension.substr(1);
    std::string bytes = readFile(path);
    const std::string kind = kindOf(lowered(extension), bytes);
    if (kind.empty()) return;
    const bool isText = looksLikeText(bytes);
    bases.push_back({kind, extension, path.filename().string(), std::move(bytes), isText});
}

/// A bad file makes worse ones hardly worse, so real files that are bad already count for little.
void addFolder(const std::string& folder, std::size_t largestBytes, std::vector<Base>& bases) {
    if (folder.empty()) return;
    std::vector<fs::path> paths;
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        paths.push_back(it->path());
    }
    std::ranges::sort(paths);
    for (const fs::path& path : paths) addFile(path, largestBytes, bases);
}

/// Damage inside a container that is whole around it.
Damage damageContent(std::string& bytes, const Base& base, const std::string& donor,
                     Chance& chance) {
    if (base.kind == "step.gz") {
        auto text = gunzipped(bytes);
        const auto other = gunzipped(donor);
        if (!text || !other) return {};
        const Damage done = damage(*text, true, *other, chance);
        bytes = gzipped(*text);
        return done;
    }
    auto files = unzipped(bytes);
    if (!files || files->empty()) return {};
    auto file = files->find("3D/3dmodel.model");
    if (file == files->end() || chance.oneIn(10)) {
        file = std::next(files->begin(), static_cast<long>(chance.below(files->size())));
    }
    const Damage done = damage(file->second, true, file->second, chance);
    bytes = zipped(*files);
    return done;
}

}  // namespace

std::vector<Base> makeBases(const std::string& samplesFolder, const std::string& dataFolder,
                            std::size_t largestBytes) {
    std::vector<Base> bases = generatedMeshes();
    for (Base& base : generatedShapes()) bases.push_back(std::move(base));
    addFolder(samplesFolder, std::size_t{1} << 20, bases);
    addFolder(dataFolder, largestBytes, bases);
    std::vector<Base> packed;
    for (const Base& base : bases) {
        if (base.kind != "step") continue;
        packed.push_back({"step.gz", "stp.gz", base.name + ".gz", gzipped(base.bytes), false});
        if (packed.size() == 8) break;
    }
    for (Base& base : packed) bases.push_back(std::move(base));
    return bases;
}

std::vector<std::string> kindsOf(const std::vector<Base>& bases) {
    std::vector<std::string> kinds;
    for (const Base& base : bases) {
        if (std::ranges::find(kinds, base.kind) == kinds.end()) kinds.push_back(base.kind);
    }
    return kinds;
}

Damaged damaged(const std::vector<Base>& bases, std::size_t base, std::uint64_t seed,
                std::uint64_t number) {
    Chance chance(seed, number);
    const Base& chosen = bases[base];
    std::vector<std::size_t> donors;
    for (std::size_t i = 0; i < bases.size(); ++i) {
        if (bases[i].kind == chosen.kind) donors.push_back(i);
    }
    const std::string& donor = bases[donors[chance.below(donors.size())]].bytes;
    Damaged out{chosen.bytes, {}, 0};
    const bool isContainer = chosen.kind == "step.gz" || chosen.kind == "3mf";
    Damage done;
    if (isContainer && !chance.oneIn(4)) {
        done = damageContent(out.bytes, chosen, donor, chance);
    } else {
        done = damage(out.bytes, chosen.isText, donor, chance);
    }
    out.what = done.what;
    out.touched = done.touched;
    return out;
}

}  // namespace torture
