#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include <Standard_Transient.hxx>
#include <TDF_Label.hxx>
#include <TopoDS_Shape.hxx>
#include <Transfer_TransientProcess.hxx>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/read/progress_reporter.h"
#include "backends/occt/read/step_pieces.h"
#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"

namespace occt {

/// Translates the shapes of a STEP file. Each product becomes one free shape of the document,
/// without the products that it uses: the library's time grows with the square of a product's
/// usages, and its stack with their depth. A sound file is cut into pieces that are translated
/// one after the other, so that only the shapes stay in memory; any other one goes through the
/// library as a whole.
class StepTranslation {
public:
    /// `file` and `products` must outlive the translation.
    StepTranslation(const step::Part21& file, const step::Products& products);

    /// Begins the phases "reading" and "translating". False when the library can't make anything
    /// of the text; a file without shapes is no failure. Pieces have about `pieceSize` instances.
    bool run(BinaryDocument& document, ProgressReporter& progress,
             std::size_t pieceSize = kPieceSize);

    /// Shape that came of a product or of an item with a name, by the number in the file; null
    /// when none did, and for any other entity.
    TopoDS_Shape shape(std::uint64_t entity) const;

    /// Whether a shape came of a body or a face.
    bool isTranslated(std::uint64_t entity) const;

    /// Label of a shape in the document; null when it has none of its own.
    TDF_Label label(const TopoDS_Shape& shape) const;

private:
    using Entity = std::pair<std::uint32_t, Handle(Standard_Transient)>;

    void prepare();
    bool runWhole(ProgressReporter& progress);
    void translate(const StepPieces& cut, std::size_t number, ProgressReporter& progress);
    void collect(const std::vector<Entity>& entities,
                 const Handle(Transfer_TransientProcess) & process);

    const step::Part21& file_;
    const step::Products& products_;
    Handle(TDocStd_Document) document_;
    std::vector<bool> asked_;       // by position: a shape is looked for
    std::vector<bool> kept_;        // by position: the shape itself is needed
    std::vector<bool> translated_;  // by position
    std::unordered_map<std::uint32_t, TopoDS_Shape> shapes_;
};

}  // namespace occt
