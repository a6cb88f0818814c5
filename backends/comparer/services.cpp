#include <filesystem>
#include <system_error>

#include "backends/comparer/comparer.h"
#include "backends/comparer/doc_comparer.h"
#include "backends/comparer/helper_run.h"
#include "backends/comparer/kept_file.h"
#include "backends/comparer/result_document.h"
#include "backends/occt/pmi_info.h"
#include "platform/hps/component_type.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace comparer {
namespace {

namespace type = HPS::ComponentType;

bool isMultiBody(const HPS::Exchange::Component& component) {
    for (const HPS::Component& owner : component.GetOwners()) {
        if (owner.GetComponentType() != type::PartDefinition) continue;
        const std::size_t bodies = owner.GetAllSubcomponents(type::BrepModel).size() +
                                   owner.GetAllSubcomponents(type::PolyBrepModel).size();
        return bodies > 1;
    }
    return false;
}

std::shared_ptr<bxtsg::Schema> readResult(const std::wstring& path) {
    ResultDocument document;
    std::string error;
    if (!document.open(os::toUtf8(path), error)) return nullptr;
    return document.rows();
}

std::string lowerExtension(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return extension;
}

/// The scene is made in a folder that is the helper's alone; what the user named is for the host
/// to write. Empty on success, else why not.
std::string keepScene(const std::filesystem::path& result, const std::filesystem::path& target) {
    const auto& files = os::services().files;
    const std::wstring folder = files ? files->makePrivateFolder(L"keep") : std::wstring();
    if (folder.empty()) return "no temporary folder can be made";
    const std::filesystem::path made = std::filesystem::path(os::toUtf8(folder)) / "result.glb";
    const HelperOutcome outcome =
        runHelper({"keep", "--result", result.string(), "--out", made.string()}, {});
    std::string cause = outcome.good ? placeFile(made, target) : outcome.cause;
    if (!outcome.good && cause.empty()) cause = "it was given up";
    std::error_code ignored;
    std::filesystem::remove_all(made.parent_path(), ignored);
    return cause;
}

std::wstring keepResult(const std::wstring& result, const std::wstring& target) {
    const std::filesystem::path from(os::toUtf8(result));
    const std::filesystem::path to(os::toUtf8(target));
    const std::string extension = lowerExtension(to);
    std::string cause = "the result is kept as .xbf or .glb";
    if (extension == ".xbf") cause = placeFile(from, to);
    if (extension == ".glb") cause = keepScene(from, to);
    return cause.empty() ? std::wstring() : os::toWide("can't write " + to.string() + ": " + cause);
}

}  // namespace

bxtexchange::Services makeServices(std::shared_ptr<occt::ImportService> imports,
                                   const Options& options) {
    bxtexchange::Services services;
    services.makeComparer = [imports = std::move(imports), options](const std::wstring&) {
        // Its own texts are sentences for the host's log; it has none in other languages.
        return std::make_unique<DocComparer>(imports, options);
    };
    services.isMultiBody = isMultiBody;
    services.getPMIInfo = occt::pmiInfo;
    services.readResult = readResult;
    services.keepResult = keepResult;
    return services;
}

}  // namespace comparer
