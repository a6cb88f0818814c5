#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <IGESControl_Reader.hxx>
#include <TopoDS_Shape.hxx>

#include "backends/occt/read/iges_structure.h"
#include "backends/occt/read/progress_reporter.h"

namespace occt {

/// One run of Open CASCADE's IGES reader, entity by entity, and the count of what came of it.
class IgesTranslation {
public:
    /// Reads the file; false when the reader can't make a model of it.
    bool read(const std::string& path);

    /// Shape of entities that stand together, in the frame of the file: solids and shells for
    /// themselves, the loose faces as one group, and so the curves and the points. Null when
    /// nothing came of them.
    TopoDS_Shape shape(const iges::Text& text, const std::vector<std::uint32_t>& entities);

    /// Entity that a solid or shell came of; 0 for other shapes.
    std::uint32_t entityOf(const TopoDS_Shape& body) const;

    /// What the file declares and the translation lacks, one sentence each. To be called last.
    std::vector<std::string> gaps(const iges::Text& text, const iges::Structure& structure) const;

private:
    struct Count {
        std::size_t declared = 0;
        std::size_t translated = 0;
    };

    TopoDS_Shape translate(const iges::Text& text, std::uint32_t number);
    void countFaces(const iges::Text& text, std::uint32_t number, const TopoDS_Shape& shape);

    IGESControl_Reader reader_;
    std::map<std::uint32_t, TopoDS_Shape> shapes_;
    std::map<const void*, std::uint32_t> origins_;
    std::map<std::uint32_t, std::size_t> reachedFaces_;  // faces that are there, by entity
};

}  // namespace occt
