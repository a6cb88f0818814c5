#include "backends/occt/import_helper.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>
#include <optional>
#include <system_error>

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/options_text.h"
#include "backends/occt/read/completeness.h"
#include "backends/occt/read/describe.h"
#include "backends/occt/read/input_file.h"
#include "backends/occt/read/progress_reporter.h"
#include "backends/occt/read/step_translation.h"
#include "backends/occt/step/checks.h"
#include "platform/os/helper_messages.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;
using MaybeCause = std::optional<ImportCause>;

struct Job {
    std::string path;
    std::string folder;
    HPS::Exchange::ImportOptions options;
};

std::optional<Job> jobFrom(const std::vector<std::string>& arguments) {
    std::map<std::string, std::string> values;
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2) {
        values[arguments[i]] = arguments[i + 1];
    }
    const auto options = parseOptions(values["--options"]);
    if (values["--in"].empty() || values["--out"].empty() || !options) return std::nullopt;
    return Job{values["--in"], values["--out"], *options};
}

ImportCause cannotWrite(const std::string& name, const std::string& folder,
                        const std::string& why) {
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    std::string text = name + " was read, but its document cannot be written to " + folder + ": ";
    if (!error && space.available < (std::uintmax_t{1} << 20)) {
        text += "the disk is full.";
    } else {
        text += why + ".";
    }
    return {"no-space", text};
}

/// Writes a file whole; the reason when that fails.
std::string writeFile(const std::string& path, const std::string& bytes) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (file) return {};
    return errno != 0 ? std::generic_category().message(errno) : "the file can't be written";
}

class ImportRun {
public:
    ImportRun(Job job, os::ParentChannel& channel)
        : job_(std::move(job)), channel_(channel), progress_(channel) {}

    MaybeCause run() {
        progress_.beginPhase("reading", 0.03);
        if (auto cause = readInput(job_.path, bytes_)) return cause;
        const step::Part21 file(bytes_);
        if (auto cause = step::refuseText(file, job_.path)) return cause;
        const step::Products products = step::readProducts(file);
        if (auto cause = step::refuseStructure(products, job_.path)) return cause;
        progress_.beginPhase("reading", 0.45);
        if (!translation_.read(bytes_, progress_)) return damaged(file);
        progress_.beginPhase("translating", 0.85);
        translation_.transfer(products, document_, progress_);
        DescribedModel model = describe(file, products, translation_, job_.options, document_);
        if (model.description.definitions.empty()) return damaged(file);
        progress_.beginPhase("measuring", 0.97);
        measureBodies(model.measurements, [this](double share) { progress_.report(share); });
        Description& description = model.description;
        for (std::string& gap : step::textGaps(file, products)) {
            description.gaps.push_back(std::move(gap));
        }
        for (std::string& gap : translationGaps(file, translation_)) {
            description.gaps.push_back(std::move(gap));
        }
        for (const std::string& gap : description.gaps) {
            channel_.send(os::formatHelperMessage(
                {os::HelperMessage::Kind::Partial, 0.0, {}, job_.path + ": " + gap}));
        }
        return write(description);
    }

private:
    ImportCause damaged(const step::Part21& file) const {
        std::string text = job_.path + " is damaged: ";
        if (file.firstBroken()) {
            text += "line " + std::to_string(file.line(file.firstBroken()->offset)) +
                    " cannot be read.";
        } else if (!file.hasEnd()) {
            text += "it ends in line " + std::to_string(file.line(bytes_.size())) +
                    ", before its data end.";
        } else {
            text += "it holds neither a product nor a shape that can be read.";
        }
        return {"damaged", text};
    }

    MaybeCause write(Description& description) {
        progress_.beginPhase("writing", 1.0);
        std::string error;
        if (!document_.save(job_.folder + "/" + kDocumentFile, error)) {
            return cannotWrite(job_.path, job_.folder, error);
        }
        const auto seal = sealOf(job_.folder + "/" + kDocumentFile);
        if (!seal) return cannotWrite(job_.path, job_.folder, "it can't be read back");
        description.document = *seal;
        error = writeFile(job_.folder + "/" + kDescriptionFile, packDescription(description));
        if (!error.empty()) return cannotWrite(job_.path, job_.folder, error);
        progress_.report(1.0);
        return std::nullopt;
    }

    Job job_;
    os::ParentChannel& channel_;
    ProgressReporter progress_;
    std::string bytes_;
    StepTranslation translation_;
    BinaryDocument document_;
};

MaybeCause runGuarded(const Job& job, os::ParentChannel& channel) {
    const std::string& name = job.path;
    try {
        return ImportRun(job, channel).run();
    } catch (const Standard_OutOfMemory&) {
        throw std::bad_alloc();
    } catch (const Standard_Failure& failure) {
        return ImportCause{"damaged", name + " is damaged: the reader gave up (" +
                                          failure.DynamicType()->Name() + ")."};
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& failure) {
        return ImportCause{"damaged",
                           name + " is damaged: the reader gave up (" + failure.what() + ")."};
    }
}

}  // namespace

int runImportHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel) {
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_Printer));
    const auto fail = [&channel](const ImportCause& cause) {
        channel.send(os::formatHelperMessage(
            {os::HelperMessage::Kind::Failure, 0.0, cause.code, cause.text}));
        return 1;
    };
    const auto job = jobFrom(arguments);
    if (!job) return fail({"internal", "The import helper was started with wrong arguments."});
    try {
        const MaybeCause cause = runGuarded(*job, channel);
        return cause ? fail(*cause) : 0;
    } catch (const std::bad_alloc&) {
        return os::kMemoryLimitExitCode;
    }
}

}  // namespace occt
