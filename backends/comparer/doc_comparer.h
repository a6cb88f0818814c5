#pragma once

#include <memory>
#include <string>

#include "backends/comparer/comparer.h"
#include "backends/comparer/helper_run.h"
#include "platform/exchange/doc_comparer.h"

namespace comparer {

/// The comparer that the exchange services hand out. Has no state of its own: one object may be
/// abandoned in the middle of a killed run and another made.
class DocComparer : public bxtimp::IDocComparer {
public:
    DocComparer(std::shared_ptr<occt::ImportService> imports, Options options)
        : imports_(std::move(imports)), options_(std::move(options)) {}

    std::wstring doComparision(std::shared_ptr<bxtsg::IFactory> factory,
                               const wchar_t* referencePath, const wchar_t* comparePath,
                               bxt::IStatusManager* statusManager, Status& status) override;

private:
    struct Answer {
        Status status = NothingCompared;
        std::string path;
        bool killed = false;
    };

    Answer compareFiles(const std::string& referencePath, const std::string& comparePath) const;
    /// What the helper said, as an answer. `names` are those of the two files.
    void take(const HelperOutcome& outcome, const std::string& out, const std::string& names,
              Answer& answer) const;
    bool importFile(const std::string& path, std::string& folder) const;
    void log(const std::string& text) const;

    std::shared_ptr<occt::ImportService> imports_;
    Options options_;
};

}  // namespace comparer
