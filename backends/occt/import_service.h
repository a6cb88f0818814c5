#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/hps/services.h"

namespace occt {

/// What an import reports while it runs, to the host's log and progress display. Called on the
/// thread that asks for the state; must not call the service.
struct ImportObserver {
    /// `fraction` in [0, 1]; `phase` in plain words, "reading", "translating", ...
    std::function<void(const std::string& path, double fraction, const std::string& phase)>
        progress;
    /// A cause of failure, a warning, or what a partial import lacks: one sentence.
    std::function<void(const std::string& text)> log;
};

/// Imports files in helper processes and remembers what they left for as long as it lives.
/// A file is parsed once per content and options: canonical path, size, modification time and
/// options are the key.
class ImportService : public HPS::Importer {
public:
    static std::shared_ptr<ImportService> create(ImportObserver observer);

    /// Folder with the document of a file, for work that needs its whole geometry (solids and
    /// surfaces). Imports the file when no such import is kept. Blocks; safe from any thread; a
    /// kill of the calling worker ends the wait. Empty on failure; `cause` then says why.
    virtual std::string documentFolder(const std::string& path,
                                       HPS::Exchange::ImportCause& cause) = 0;

    /// Ends all imports under way.
    virtual void cancelAll() = 0;
};

}  // namespace occt
