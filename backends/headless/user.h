#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/ui/file_chooser.h"

namespace headless {

class Dialog;

/// A message box as it was put before the user.
struct MessageBox {
    std::wstring text;
    std::wstring caption;
    std::uint32_t style = 0;  ///< see ui::Toolkit::messageBox
};

/// Who would sit before the screen: sees what the host shows and answers what it asks. All calls
/// come on the user-interface thread.
class User {
public:
    virtual ~User();

    /// A modal dialog has opened and its controls are filled. Types and presses by means of the
    /// dialog's operations. A dialog that is still open afterwards is closed as by Esc: nothing
    /// else could ever end it.
    virtual void answerDialog(Dialog& dialog) = 0;

    /// A message box; returns the number of the button that was pressed (1 is OK).
    virtual int answerMessageBox(const MessageBox& box) = 0;

    /// Where to save; empty cancels. The default extension is added to what is returned.
    virtual std::optional<std::wstring> answerSaveFile(const ui::SaveFileOptions& /*options*/) {
        return std::nullopt;
    }
    /// Whether a file that exists may be replaced; a no cancels the choice.
    virtual bool allowsReplacing(const std::wstring& /*path*/) { return true; }

    /// Asked again and again while the progress window stands; true presses its Cancel.
    virtual bool cancelsProgress() { return false; }

    /// The progress window shows another number, 0 to 100 per cent.
    virtual void seeProgress(const std::wstring& /*title*/, int /*percent*/) {}

    /// The status bar shows another text; empty when it was cleared.
    virtual void seeStatusText(const std::wstring& /*text*/) {}
};

}  // namespace headless
