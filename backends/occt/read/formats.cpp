#include "backends/occt/read/formats.h"

#include <algorithm>

#include "backends/mesh/scene.h"
#include "backends/occt/file_formats.h"
#include "backends/occt/read/step_references.h"

namespace occt {
namespace {

char small(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool endsLike(std::string_view path, std::string_view extension) {
    if (path.size() <= extension.size()) return false;
    const std::string_view end = path.substr(path.size() - extension.size());
    return path[path.size() - extension.size() - 1] == '.' &&
           std::equal(end.begin(), end.end(), extension.begin(),
                      [](char a, char b) { return small(a) == b; });
}

std::string_view withoutBlanks(std::string_view bytes) {
    const std::size_t start = bytes.find_first_not_of(" \t\r\n\f\v");
    return start == std::string_view::npos ? std::string_view() : bytes.substr(start);
}

bool isStep(std::string_view bytes) {
    constexpr std::string_view mark = "iso-10303-21";
    const std::string_view text = withoutBlanks(bytes).substr(0, mark.size());
    return std::equal(text.begin(), text.end(), mark.begin(), mark.end(),
                      [](char a, char b) { return small(a) == b; });
}

/// Lines of 80 columns whose 73rd names the section; the first section is S.
bool isIges(std::string_view bytes) {
    constexpr std::size_t column = 72;
    constexpr std::size_t end = 80;
    const std::string_view line = bytes.substr(0, bytes.find_first_of("\r\n"));
    if (line.size() < end - 1 || line[column] != 'S') return false;
    const std::string_view number = line.substr(column + 1, end - column - 1);
    const std::size_t digit = number.find_first_not_of(" 0");
    return digit != std::string_view::npos && number[digit] == '1' &&
           number.find_first_not_of(" 0123456789") == std::string_view::npos;
}

/// Text or binary; the text may have a word for other tools in front.
bool isBrep(std::string_view bytes) {
    constexpr std::string_view word = "DBRep_DrawableShape";
    std::string_view text = withoutBlanks(bytes.substr(0, 100));
    if (text.starts_with(word)) text = withoutBlanks(text.substr(word.size()));
    return text.starts_with("CASCADE Topology V") || text.starts_with("Open CASCADE Topology V");
}

bool isXbf(std::string_view bytes) {
    return bytes.starts_with("BINFILE");
}

template <mesh::Format format>
bool isMesh(std::string_view bytes) {
    return mesh::is(format, bytes);
}

const std::vector<Format>& table() {
    static const std::vector<Format> rows = {
        {FormatId::Step, "STEP", "STEP Files", {"stp", "step"}, isStep, false, filesOfStep},
        {FormatId::CompressedStep,
         "compressed STEP",
         "Compressed STEP Files",
         {"stpz", "stp.gz", "step.gz"},
         isStep,
         true,
         filesOfStep},
        {FormatId::Iges, "IGES", "IGES Files", {"igs", "iges"}, isIges, false, nullptr},
        {FormatId::Brep, "BREP", "BREP Files", {"brep", "brp"}, isBrep, false, nullptr},
        {FormatId::Xbf, "XBF", "XBF Files", {"xbf"}, isXbf, false, nullptr},
        {FormatId::Gltf,
         "glTF",
         "glTF Files",
         {"gltf", "glb"},
         isMesh<mesh::Format::Gltf>,
         false,
         mesh::filesBeside},
        {FormatId::ThreeMf,
         "3MF",
         "3MF Files",
         {"3mf"},
         isMesh<mesh::Format::ThreeMf>,
         false,
         nullptr},
        {FormatId::Ply, "PLY", "PLY Files", {"ply"}, isMesh<mesh::Format::Ply>, false, nullptr},
        {FormatId::Stl, "STL", "STL Files", {"stl"}, isMesh<mesh::Format::Stl>, false, nullptr},
        {FormatId::Obj, "OBJ", "Wavefront Obj", {"obj"}, isMesh<mesh::Format::Obj>, false, nullptr},
    };
    return rows;
}

}  // namespace

std::span<const Format> formats() {
    return table();
}

const Format& formatOf(FormatId id) {
    return *std::find_if(table().begin(), table().end(),
                         [id](const Format& format) { return format.id == id; });
}

Recognition recognise(const std::string& path, std::string_view bytes, bool isPacked) {
    const Format* named = nullptr;
    const Format* found = nullptr;
    for (const Format& format : table()) {
        for (const std::string_view extension : format.extensions) {
            if (!named && endsLike(path, extension)) named = &format;
        }
        const bool fits = format.isPacked == isPacked && format.recognises;
        if (!found && fits && format.recognises(bytes)) found = &format;
    }
    // What is packed has told what it is by its content or not at all.
    if (!found) return {isPacked ? nullptr : named, nullptr};
    return {found, named == found ? nullptr : named};
}

std::string formatNames() {
    std::string names;
    const std::size_t count = table().size();
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) names += i + 1 == count ? " and " : ", ";
        names += table()[i].name;
    }
    return names;
}

std::vector<FileFormat> fileFormats() {
    std::vector<FileFormat> out;
    for (const Format& format : table()) {
        std::string patterns;
        for (const std::string_view extension : format.extensions) {
            if (!patterns.empty()) patterns += ';';
            patterns += "*.";
            patterns += extension;
        }
        out.push_back({format.name, format.listName, patterns});
    }
    return out;
}

}  // namespace occt
