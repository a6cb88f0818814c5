#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <STEPCAFControl_Reader.hxx>
#include <Standard_Transient.hxx>
#include <TDF_Label.hxx>
#include <TopoDS_Shape.hxx>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/read/progress_reporter.h"
#include "backends/occt/step/products.h"
#include "platform/hps/import_options.h"

namespace occt {

/// One run of Open CASCADE's STEP reader. The assembly structure is taken out before the
/// geometry is translated, so that each product becomes one free shape of the document: the
/// reader's time grows with the square of a product's usages, and its stack with their depth.
class StepTranslation {
public:
    StepTranslation();

    /// Parses the text; false when the reader can't make a model of it.
    bool read(const std::string& text, ProgressReporter& progress);

    /// Translates all products into the document; false when nothing came of it.
    bool transfer(const step::Products& products, BinaryDocument& document,
                  ProgressReporter& progress);

    /// Shape that came of the entity with that number in the file; null when none did.
    TopoDS_Shape shape(std::uint64_t entity) const;

    /// Label of a shape in the document; null when it has none of its own.
    TDF_Label label(const TopoDS_Shape& shape) const;

private:
    Handle(Standard_Transient) entity(std::uint64_t number) const;
    void detachUsages(const step::Products& products);
    void detachItems(const step::Products& products);

    STEPCAFControl_Reader reader_;
    std::unordered_map<std::uint64_t, Handle(Standard_Transient)> entities_;
    Handle(TDocStd_Document) document_;
};

}  // namespace occt
