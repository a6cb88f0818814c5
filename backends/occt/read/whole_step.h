#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include <STEPCAFControl_Reader.hxx>
#include <Standard_Transient.hxx>
#include <TDocStd_Document.hxx>
#include <Transfer_TransientProcess.hxx>

#include "backends/occt/read/progress_reporter.h"
#include "backends/occt/step/products.h"

namespace occt {

/// Tells a reader to look at shapes only. Names and all else come from the file's text, which
/// keeps every character of them.
void leaveOutAttributes(STEPCAFControl_Reader& reader);

/// One run of Open CASCADE's STEP reader over a whole file, for text that it alone can judge:
/// it makes something of many kinds of damage. The assembly structure is taken out before the
/// geometry is translated.
class WholeStep {
public:
    WholeStep();

    /// Parses the text; false when the reader can't make a model of it.
    bool read(std::string_view text, ProgressReporter& progress);

    /// Translates all products into the document; false when nothing came of it.
    bool transfer(const step::Products& products, Handle(TDocStd_Document) & document,
                  ProgressReporter& progress);

    /// Entities by their numbers in the file.
    const std::unordered_map<std::uint64_t, Handle(Standard_Transient)>& entities() const {
        return entities_;
    }

    /// What came of which entity.
    Handle(Transfer_TransientProcess) process() const;

private:
    Handle(Standard_Transient) entity(std::uint64_t number) const;
    void detachUsages(const step::Products& products);
    void detachItems(const step::Products& products);

    STEPCAFControl_Reader reader_;
    std::unordered_map<std::uint64_t, Handle(Standard_Transient)> entities_;
};

}  // namespace occt
