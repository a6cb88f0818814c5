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
#include "backends/occt/read/input_files.h"
#include "backends/occt/read/linked_files.h"
#include "backends/occt/read/progress_reporter.h"
#include "backends/occt/read/reader.h"
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
    ImportRun(Job job, os::ParentChannel& channel, os::Confinement* confinement)
        : job_(std::move(job)), channel_(channel), confinement_(confinement), progress_(channel) {}

    MaybeCause run() {
        progress_.beginPhase("reading", 0.03);
        const InputFiles files(job_.path);
        if (const auto& cause = files.all()[0].cause) return cause;
        if (!files.all()[0].found.format) return InputFiles::unknownFormat(files.all()[0]);
        confine(files);
        DescribedModel model;
        const ReadContext context{job_.options, progress_};
        if (auto cause = readWithLinks(files, context, document_, model)) return cause;
        for (const std::string& warning : model.warnings) {
            send(os::HelperMessage::Kind::Warning, warning);
        }
        for (const std::string& gap : model.description.gaps) {
            send(os::HelperMessage::Kind::Partial, gap);
        }
        return write(model.description);
    }

private:
    void send(os::HelperMessage::Kind kind, const std::string& sentence) {
        channel_.send(os::formatHelperMessage({kind, 0.0, {}, job_.path + ": " + sentence}));
    }

    /// From here on only what is needed can be reached, whatever stands in the files.
    void confine(const InputFiles& files) {
        os::Reach reach;
        for (const InputFile& file : files.all()) {
            std::error_code error;
            reach.readable.push_back(std::filesystem::absolute(file.path, error).string());
        }
        reach.writable.push_back(std::filesystem::absolute(job_.folder).string());
        os::confineHelper(confinement_, reach, channel_);
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
    os::Confinement* confinement_;
    ProgressReporter progress_;
    BinaryDocument document_;
};

MaybeCause runGuarded(const Job& job, os::ParentChannel& channel, os::Confinement* confinement) {
    const std::string& name = job.path;
    try {
        return ImportRun(job, channel, confinement).run();
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

int runImportHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel,
                    os::Confinement* confinement) {
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_Printer));
    const auto fail = [&channel](const ImportCause& cause) {
        channel.send(os::formatHelperMessage(
            {os::HelperMessage::Kind::Failure, 0.0, cause.code, cause.text}));
        return 1;
    };
    const auto job = jobFrom(arguments);
    if (!job) return fail({"internal", "The import helper was started with wrong arguments."});
    try {
        const MaybeCause cause = runGuarded(*job, channel, confinement);
        return cause ? fail(*cause) : 0;
    } catch (const std::bad_alloc&) {
        return os::kMemoryLimitExitCode;
    }
}

}  // namespace occt
