#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>

#include "tests/torture/archive.h"
#include "tests/torture/generated.h"

namespace torture {
namespace {

struct Mesh {
    std::vector<std::array<float, 3>> points;
    std::vector<std::array<std::uint32_t, 3>> triangles;
};

/// A ring: closed, with no triangle flat and no point twice.
Mesh ring(unsigned around, unsigned across) {
    Mesh mesh;
    for (unsigned i = 0; i < around; ++i) {
        for (unsigned k = 0; k < across; ++k) {
            const double u = 2 * M_PI * i / around;
            const double v = 2 * M_PI * k / across;
            const double r = 20 + 5 * std::cos(v);
            mesh.points.push_back({static_cast<float>(r * std::cos(u)),
                                   static_cast<float>(r * std::sin(u)),
                                   static_cast<float>(5 * std::sin(v))});
            const unsigned a = i * across + k;
            const unsigned b = i * across + (k + 1) % across;
            const unsigned c = (i + 1) % around * across + k;
            const unsigned d = (i + 1) % around * across + (k + 1) % across;
            mesh.triangles.push_back({a, c, b});
            mesh.triangles.push_back({b, c, d});
        }
    }
    return mesh;
}

template <class T>
void put(std::string& out, T value, bool bigEndian = false) {
    char raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof(T));
    if (bigEndian) std::reverse(raw, raw + sizeof(T));
    out.append(raw, sizeof(T));
}

std::string textStl(const Mesh& mesh) {
    std::ostringstream out;
    out << "solid ring\n";
    for (const auto& triangle : mesh.triangles) {
        out << " facet normal 0 0 0\n  outer loop\n";
        for (const std::uint32_t corner : triangle) {
            const auto& p = mesh.points[corner];
            out << "   vertex " << p[0] << ' ' << p[1] << ' ' << p[2] << '\n';
        }
        out << "  endloop\n endfacet\n";
    }
    out << "endsolid ring\n";
    return out.str();
}

std::string binaryStl(const Mesh& mesh) {
    std::string out(80, ' ');
    put(out, static_cast<std::uint32_t>(mesh.triangles.size()));
    for (const auto& triangle : mesh.triangles) {
        out.append(12, '\0');
        for (const std::uint32_t corner : triangle) {
            for (const float coordinate : mesh.points[corner]) put(out, coordinate);
        }
        out.append(2, '\0');
    }
    return out;
}

std::string obj(const Mesh& mesh) {
    std::ostringstream out;
    out << "o ring\n";
    for (const auto& p : mesh.points) out << "v " << p[0] << ' ' << p[1] << ' ' << p[2] << '\n';
    for (const auto& t : mesh.triangles) {
        out << "f " << t[0] + 1 << ' ' << t[1] + 1 << ' ' << t[2] + 1 << '\n';
    }
    return out.str();
}

std::string ply(const Mesh& mesh, const std::string& form) {
    std::ostringstream head;
    head << "ply\nformat " << form << " 1.0\nelement vertex " << mesh.points.size()
         << "\nproperty float x\nproperty float y\nproperty float z\nelement face "
         << mesh.triangles.size() << "\nproperty list uchar int vertex_indices\nend_header\n";
    std::string out = head.str();
    const bool big = form == "binary_big_endian";
    if (form == "ascii") {
        std::ostringstream body;
        for (const auto& p : mesh.points) body << p[0] << ' ' << p[1] << ' ' << p[2] << '\n';
        for (const auto& t : mesh.triangles) {
            body << "3 " << t[0] << ' ' << t[1] << ' ' << t[2] << '\n';
        }
        return out + body.str();
    }
    for (const auto& p : mesh.points) {
        for (const float coordinate : p) put(out, coordinate, big);
    }
    for (const auto& t : mesh.triangles) {
        out += '\3';
        for (const std::uint32_t corner : t) put(out, static_cast<std::int32_t>(corner), big);
    }
    return out;
}

std::string base64(const std::string& bytes) {
    constexpr const char* digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const bool there = i + k < bytes.size();
            group = group << 8 | (there ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            out += i + k > bytes.size() ? '=' : digits[group >> (18 - 6 * k) & 63];
        }
    }
    return out;
}

std::string gltfBuffer(const Mesh& mesh) {
    std::string out;
    for (const auto& p : mesh.points) {
        for (const float coordinate : p) put(out, coordinate / 1000);
    }
    for (const auto& t : mesh.triangles) {
        for (const std::uint32_t corner : t) put(out, corner);
    }
    return out;
}

nlohmann::json gltfJson(const Mesh& mesh, std::size_t bytes) {
    const std::size_t pointBytes = mesh.points.size() * 12;
    return {
        {"asset", {{"version", "2.0"}}},
        {"scene", 0},
        {"scenes", {{{"nodes", {0, 1}}}}},
        {"nodes",
         {{{"mesh", 0}, {"name", "ring"}}, {{"mesh", 0}, {"translation", {0.1, 0.0, 0.0}}}}},
        {"meshes",
         {{{"name", "ring"},
           {"primitives", {{{"attributes", {{"POSITION", 0}}}, {"indices", 1}}}}}}},
        {"accessors",
         {{{"bufferView", 0},
           {"componentType", 5126},
           {"count", mesh.points.size()},
           {"type", "VEC3"},
           {"min", {-0.025, -0.025, -0.005}},
           {"max", {0.025, 0.025, 0.005}}},
          {{"bufferView", 1},
           {"componentType", 5125},
           {"count", mesh.triangles.size() * 3},
           {"type", "SCALAR"}}}},
        {"bufferViews",
         {{{"buffer", 0}, {"byteOffset", 0}, {"byteLength", pointBytes}},
          {{"buffer", 0}, {"byteOffset", pointBytes}, {"byteLength", bytes - pointBytes}}}},
        {"buffers", {{{"byteLength", bytes}}}},
    };
}

std::string gltf(const Mesh& mesh) {
    const std::string buffer = gltfBuffer(mesh);
    nlohmann::json file = gltfJson(mesh, buffer.size());
    file["buffers"][0]["uri"] = "data:application/octet-stream;base64," + base64(buffer);
    return file.dump(1);
}

std::string glb(const Mesh& mesh) {
    const std::string buffer = gltfBuffer(mesh);
    std::string json = gltfJson(mesh, buffer.size()).dump();
    json.append((4 - json.size() % 4) % 4, ' ');
    std::string out = "glTF";
    put(out, std::uint32_t{2});
    put(out, static_cast<std::uint32_t>(28 + json.size() + buffer.size()));
    put(out, static_cast<std::uint32_t>(json.size()));
    out += "JSON" + json;
    put(out, static_cast<std::uint32_t>(buffer.size()));
    return out + std::string("BIN\0", 4) + buffer;
}

std::string threeMf(const Mesh& mesh) {
    std::ostringstream xml;
    xml << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<model unit=\"millimeter\" "
           "xml:lang=\"en-US\" xmlns=\"http://schemas.microsoft.com/3dmanufacturing/core/2015/02\">"
           "\n<resources>\n<object id=\"1\" type=\"model\" name=\"ring\">\n<mesh>\n<vertices>\n";
    for (const auto& p : mesh.points) {
        xml << "<vertex x=\"" << p[0] << "\" y=\"" << p[1] << "\" z=\"" << p[2] << "\" />\n";
    }
    xml << "</vertices>\n<triangles>\n";
    for (const auto& t : mesh.triangles) {
        xml << "<triangle v1=\"" << t[0] << "\" v2=\"" << t[1] << "\" v3=\"" << t[2] << "\" />\n";
    }
    xml << "</triangles>\n</mesh>\n</object>\n</resources>\n<build>\n<item objectid=\"1\" />\n"
           "</build>\n</model>\n";
    return zipped(
        {{"3D/3dmodel.model", xml.str()},
         {"[Content_Types].xml",
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Types "
          "xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default "
          "Extension=\"rels\" "
          "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\" /><Default "
          "Extension=\"model\" "
          "ContentType=\"application/vnd.ms-package.3dmanufacturing-3dmodel+xml\" /></Types>"},
         {"_rels/.rels",
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Relationships "
          "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"><Relationship "
          "Target=\"/3D/3dmodel.model\" Id=\"rel0\" "
          "Type=\"http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel\" "
          "/></Relationships>"}});
}

}  // namespace

std::vector<Base> generatedMeshes() {
    const Mesh mesh = ring(16, 8);
    return {
        {"stl", "stl", "ring, text", textStl(mesh), true},
        {"stl binary", "stl", "ring, binary", binaryStl(mesh), false},
        {"obj", "obj", "ring", obj(mesh), true},
        {"ply", "ply", "ring, text", ply(mesh, "ascii"), true},
        {"ply binary", "ply", "ring, little end first", ply(mesh, "binary_little_endian"), false},
        {"ply binary", "ply", "ring, big end first", ply(mesh, "binary_big_endian"), false},
        {"gltf", "gltf", "ring", gltf(mesh), true},
        {"glb", "glb", "ring", glb(mesh), false},
        {"3mf", "3mf", "ring", threeMf(mesh), false},
    };
}

}  // namespace torture
