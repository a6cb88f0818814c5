#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/cli/options.h"
#include "apps/cli/run_log.h"
#include "backends/headless/desktop.h"
#include "backends/headless/toolkit.h"

namespace occt {
class ImportService;
}

namespace cli {

/// What this program puts behind the platform's contracts, for as long as it lives. Only one may
/// live at a time, and it must outlive the plug-in. Its end removes all temporary files.
class HostServices {
public:
    /// `log` outlives the services.
    HostServices(const Options& options, RunLog& log);
    ~HostServices();
    HostServices(const HostServices&) = delete;
    HostServices& operator=(const HostServices&) = delete;

    /// Makes the desktop: dialogs, message boxes and choices of files are answered by this user;
    /// clipboard and screen are this process's own.
    void installDesktop(std::shared_ptr<headless::User> user);

    /// There from installDesktop() on.
    const headless::Toolkit& toolkit() const { return *toolkit_; }
    const headless::Clipboard& clipboard() const { return *clipboard_; }

private:
    std::shared_ptr<headless::Toolkit> toolkit_;
    std::shared_ptr<headless::Clipboard> clipboard_ = std::make_shared<headless::Clipboard>();
    std::shared_ptr<occt::ImportService> imports_;
};

/// Path of the plug-in: beside the running executable.
std::string pluginPath();

/// Names and patterns of the formats that this host can open: those that the import reads.
std::vector<std::wstring> fileFormats();

/// Two-letter code of the user's language: BEXTORA_LANG, else that of the locale, else "en".
std::wstring userLanguage();

}  // namespace cli
