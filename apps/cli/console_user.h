#pragma once

#include <optional>
#include <string>

#include "apps/cli/console.h"
#include "apps/cli/file_names.h"
#include "backends/headless/user.h"

namespace cli {

/// The user of one run: names the two files when the host asks for them, once, and the file to
/// save, says no to every further question, and reads everything else out on the console.
class ConsoleUser final : public headless::User {
public:
    struct Files {
        std::string reference;  ///< as typed
        std::string compare;
        std::string report;  ///< empty: nothing is saved
    };

    /// `console` and `names` outlive the user. `showStatus`: status bar texts become lines.
    ConsoleUser(Files files, Console& console, const FileNames& names, bool showStatus)
        : files_(std::move(files)), console_(console), names_(names), showStatus_(showStatus) {}

    void answerDialog(headless::Dialog& dialog) override;
    int answerMessageBox(const headless::MessageBox& box) override;
    std::optional<std::wstring> answerSaveFile(const ui::SaveFileOptions& options) override;
    bool cancelsProgress() override;
    void seeStatusText(const std::wstring& text) override;

    /// True once the console holds a reason why there is no result.
    bool gaveReason() const { return gaveReason_; }
    /// Last status text that was not empty.
    const std::wstring& lastStatusText() const { return lastStatusText_; }

private:
    /// Lines of their own for the lines of a text.
    void readOut(const std::wstring& text);

    Files files_;
    Console& console_;
    const FileNames& names_;
    bool showStatus_;
    bool asked_ = false;
    bool gaveReason_ = false;
    std::wstring lastStatusText_;
};

}  // namespace cli
