#include "backends/mesh/three_mf.h"

#include <Model/COM/NMR_DLLInterfaces.h>

#include <exception>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>

#include "backends/mesh/bodies.h"
#include "backends/mesh/build.h"
#include "backends/mesh/graph.h"
#include "backends/mesh/text.h"

namespace mesh {
namespace {

using Raw = NMR::PLib3MFBase*;
struct Release {
    void operator()(Raw handle) const { NMR::lib3mf_release(handle); }
};
/// A handle of the library.
using Handle = std::unique_ptr<NMR::PLib3MFBase, Release>;

struct LibraryFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void require(LIB3MFRESULT result, Raw who) {
    if (result == LIB3MF_OK) return;
    DWORD code = 0;
    LPCSTR message = nullptr;
    NMR::lib3mf_getlasterror(who, &code, &message);
    throw LibraryFailure(message != nullptr && *message != '\0' ? toUtf8(message)
                                                                : "error " + std::to_string(code));
}

/// A handle that a function makes of another one.
template <typename Function, typename... Arguments>
Handle make(Function function, Raw from, Arguments... arguments) {
    Raw out = nullptr;
    require(function(from, arguments..., &out), from);
    return Handle(out);
}

/// A text that a function writes into a buffer.
template <typename Function, typename... Arguments>
std::string text(Function function, Raw from, Arguments... arguments) {
    ULONG needed = 0;
    require(function(from, arguments..., nullptr, 0, &needed), from);
    std::string out(needed + 1, '\0');
    require(function(from, arguments..., out.data(), static_cast<ULONG>(out.size()), &needed),
            from);
    out.resize(needed);
    return toUtf8(out);
}

struct Unit {
    double mm;
    const char* name;
    double namedMm;
};

Unit unitOf(Raw model) {
    DWORD unit = 0;
    require(NMR::lib3mf_model_getunit(model, &unit), model);
    switch (unit) {
        case NMR::MODELUNIT_MICROMETER: return {0.001, "Millimeter", 1.0};
        case NMR::MODELUNIT_CENTIMETER: return {10.0, "Centimeter", 10.0};
        case NMR::MODELUNIT_INCH: return {25.4, "Inch", 25.4};
        case NMR::MODELUNIT_FOOT: return {304.8, "Foot", 304.8};
        case NMR::MODELUNIT_METER: return {1000.0, "Meter", 1000.0};
        default: return {1.0, "Millimeter", 1.0};
    }
}

class ThreeMfReader {
public:
    Outcome run(std::string_view bytes) {
        Raw raw = nullptr;
        require(NMR::lib3mf_createmodel(&raw), raw);
        model_.reset(raw);
        readPackage(bytes);
        const Unit unit = unitOf(model_.get());
        unitMm_ = unit.mm;
        scene_.unitName = unit.name;
        scene_.unitMm = unit.namedMm;
        addMetadata();
        scene_.definitions.emplace_back();
        addBuildItems();
        for (std::size_t i = 0; i < open_.size(); ++i) addComponents(i);
        return finish();
    }

private:
    void readPackage(std::string_view bytes) {
        const Handle reader = make(NMR::lib3mf_model_queryreader, model_.get(), "3mf");
        // The library reads from a pointer to bytes that it leaves as they are.
        auto* const data = reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data()));
        require(NMR::lib3mf_reader_readfrombuffer(reader.get(), data, bytes.size()), reader.get());
        DWORD warnings = 0;
        require(NMR::lib3mf_reader_getwarningcount(reader.get(), &warnings), reader.get());
        std::map<std::string, std::size_t> counts;
        for (DWORD i = 0; i < warnings; ++i) {
            DWORD code = 0;
            ++counts[text(NMR::lib3mf_reader_getwarningutf8, reader.get(), i, &code)];
        }
        for (const auto& [warning, count] : counts) {
            const std::string times = count > 1 ? ", " + std::to_string(count) + " times" : "";
            scene_.warnings.push_back("The package is not as it should be: \"" + warning + "\"" +
                                      times + ".");
        }
    }

    void addMetadata() {
        DWORD count = 0;
        require(NMR::lib3mf_model_getmetadatacount(model_.get(), &count), model_.get());
        for (DWORD i = 0; i < count; ++i) {
            std::string key = text(NMR::lib3mf_model_getmetadatakeyutf8, model_.get(), i);
            std::string value = text(NMR::lib3mf_model_getmetadatavalueutf8, model_.get(), i);
            if (!key.empty()) scene_.metadata.emplace_back(std::move(key), std::move(value));
        }
    }

    Matrix matrixOf(const NMR::MODELTRANSFORM& transform) const {
        Matrix out{};
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) {
                out[3 * row + column] = static_cast<double>(transform.m_fFields[row][column]);
            }
            out[9 + row] = static_cast<double>(transform.m_fFields[row][3]) * unitMm_;
        }
        return out;
    }

    void addBuildItems() {
        const Handle items = make(NMR::lib3mf_model_getbuilditems, model_.get());
        for (;;) {
            BOOL more = 0;
            require(NMR::lib3mf_builditemiterator_movenext(items.get(), &more), items.get());
            if (!more) return;
            const Handle item = make(NMR::lib3mf_builditemiterator_getcurrent, items.get());
            ++scene_.counts.nodes.declared;
            Matrix placement = kIdentity;
            BOOL moved = 0;
            require(NMR::lib3mf_builditem_hasobjecttransform(item.get(), &moved), item.get());
            if (moved) {
                NMR::MODELTRANSFORM transform;
                require(NMR::lib3mf_builditem_getobjecttransform(item.get(), &transform),
                        item.get());
                placement = matrixOf(transform);
            }
            use(0, make(NMR::lib3mf_builditem_getobjectresource, item.get()), placement);
        }
    }

    void use(std::uint32_t parent, Handle object, const Matrix& placement) {
        const std::uint32_t definition = definitionOf(std::move(object));
        scene_.definitions[parent].usages.push_back({definition, placement});
        ++scene_.counts.nodes.read;
    }

    std::uint32_t definitionOf(Handle object) {
        DWORD id = 0;
        require(NMR::lib3mf_resource_getresourceid(object.get(), &id), object.get());
        const auto fresh = static_cast<std::uint32_t>(scene_.definitions.size());
        const auto [found, isNew] = numbers_.try_emplace(id, fresh);
        if (!isNew) return found->second;
        ++scene_.counts.meshes.declared;
        scene_.definitions.emplace_back();
        scene_.definitions[fresh].name = text(NMR::lib3mf_object_getnameutf8, object.get());
        const std::string number = text(NMR::lib3mf_object_getpartnumberutf8, object.get());
        if (!number.empty()) scene_.definitions[fresh].metadata.emplace_back("Part number", number);
        BOOL isMesh = 0;
        require(NMR::lib3mf_object_ismeshobject(object.get(), &isMesh), object.get());
        if (isMesh) {
            addMesh(object.get(), scene_.definitions[fresh]);
        } else {
            open_.push_back({std::move(object), fresh});
        }
        ++scene_.counts.meshes.read;
        return fresh;
    }

    void addMesh(Raw object, Definition& part) {
        DWORD points = 0;
        DWORD triangles = 0;
        require(NMR::lib3mf_meshobject_getvertexcount(object, &points), object);
        require(NMR::lib3mf_meshobject_gettrianglecount(object, &triangles), object);
        std::vector<NMR::MODELMESHVERTEX> vertices(points);
        std::vector<NMR::MODELMESHTRIANGLE> corners(triangles);
        DWORD got = 0;
        if (points > 0) {
            require(NMR::lib3mf_meshobject_getvertices(object, vertices.data(), points, &got),
                    object);
        }
        if (triangles > 0) {
            require(
                NMR::lib3mf_meshobject_gettriangleindices(object, corners.data(), triangles, &got),
                object);
        }
        Soup soup;
        for (const NMR::MODELMESHVERTEX& vertex : vertices) {
            Point point{};
            for (std::size_t i = 0; i < 3; ++i) {
                point[i] = static_cast<double>(vertex.m_fPosition[i]) * unitMm_;
            }
            soup.pointsMm.push_back(point);
        }
        for (const NMR::MODELMESHTRIANGLE& triangle : corners) {
            const auto& n = triangle.m_nIndices;
            if (n[0] >= points || n[1] >= points || n[2] >= points) {
                throw LibraryFailure("a triangle names a vertex that is not there");
            }
            soup.triangles.push_back({n[0], n[1], n[2]});
        }
        auto& counts = scene_.counts;
        counts.vertices.declared += points;
        counts.vertices.read += points;
        counts.triangles.declared += triangles;
        counts.triangles.read += triangles;
        LeftOut leftOut;
        part.bodies = splitBodies(welded(soup), leftOut);
        addLeftOut(leftOut, scene_);
        DWORD beams = 0;
        require(NMR::lib3mf_meshobject_getbeamcount(object, &beams), object);
        beams_ += beams;
    }

    void addComponents(std::size_t number) {
        const std::uint32_t definition = open_[number].definition;
        // The list may grow and move meanwhile; the handle itself stays.
        const Raw object = open_[number].object.get();
        DWORD count = 0;
        require(NMR::lib3mf_componentsobject_getcomponentcount(object, &count), object);
        for (DWORD i = 0; i < count; ++i) {
            const Handle component = make(NMR::lib3mf_componentsobject_getcomponent, object, i);
            ++scene_.counts.nodes.declared;
            Matrix placement = kIdentity;
            BOOL moved = 0;
            require(NMR::lib3mf_component_hastransform(component.get(), &moved), component.get());
            if (moved) {
                NMR::MODELTRANSFORM transform;
                require(NMR::lib3mf_component_gettransform(component.get(), &transform),
                        component.get());
                placement = matrixOf(transform);
            }
            use(definition, make(NMR::lib3mf_component_getobjectresource, component.get()),
                placement);
        }
    }

    Outcome finish() {
        if (beams_ > 0) {
            scene_.gaps.push_back(counted(beams_, "beam") + " of a lattice not read.");
        }
        if (scene_.counts.triangles.declared == 0) {
            return refused("empty", "holds no triangles that are to be built.");
        }
        Matrix rootPlacement = kIdentity;
        const auto& items = scene_.definitions[0].usages;
        if (items.size() == 1) {
            rootPlacement = items[0].placement;
            scene_.root = items[0].definition;
        }
        return placed(std::move(scene_), rootPlacement);
    }

    struct Open {
        Handle object;
        std::uint32_t definition = 0;
    };

    Handle model_;
    double unitMm_ = 1.0;
    Scene scene_;
    std::vector<Open> open_;
    std::map<DWORD, std::uint32_t> numbers_;
    std::uint64_t beams_ = 0;
};

}  // namespace

Outcome readThreeMf(std::string_view bytes) {
    if (!bytes.starts_with("PK")) {
        return refused("not-this-format", "is no 3MF file: it is no ZIP archive.");
    }
    try {
        return ThreeMfReader().run(bytes);
    } catch (const LibraryFailure& failure) {
        return refused("damaged",
                       std::string("is damaged: the 3MF reader gave up (") + failure.what() + ").");
    }
}

}  // namespace mesh
