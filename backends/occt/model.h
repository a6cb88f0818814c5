#pragma once

#include <memory>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>

#include "platform/exchange/geometry_result.h"
#include "platform/hps/component_provider.h"

namespace occt {

/// An imported model in memory: the component tree over a binary document that the import helper
/// left, with the geometry behind it. Lengths in millimetres.
class Model : public HPS::ComponentProvider {
public:
    /// Reads the document that an import helper left in `folder`. Null when there is none or it
    /// is damaged; `error` then says why.
    static std::shared_ptr<const Model> load(const std::string& folder, std::string& error);

    /// Placement of an occurrence (or of what lies below it) in world space.
    virtual gp_Trsf placement(HPS::ComponentId id) const = 0;

    /// Shape of a representation item in its part's own frame; null for other components.
    virtual TopoDS_Shape shape(HPS::ComponentId item) const = 0;

    /// Number of the distinct definition behind a leaf occurrence, part definition or item:
    /// equal exactly for instances of one and the same definition. Dense, from 0.
    virtual std::size_t definition(HPS::ComponentId id) const = 0;
    virtual std::size_t definitionCount() const = 0;

    /// Identity that the import helper computed for a representation item; null when the body
    /// could not be measured or the component is no body.
    virtual const bxtexchange::BodyIdentity* identity(HPS::ComponentId item) const = 0;

    /// Digest of an item's exact geometry in its own frame, independent of names, entity order
    /// and numbering; empty when there is none. Equal digests mean equal bodies.
    virtual std::string contentDigest(HPS::ComponentId item) const = 0;

    /// Length of the file's unit in millimetres.
    virtual double unitMm() const = 0;

    /// What the file declares and the import could not translate, one sentence each; empty for a
    /// complete import.
    virtual std::vector<std::string> gaps() const = 0;
};

}  // namespace occt
