#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/ui/dialog_events.h"
#include "platform/ui/dialog_surface.h"
#include "platform/ui/dialog_template.h"
#include "platform/ui/tree_control.h"

namespace ui {

/// How a file edit's browse button asks for a file.
struct BrowseOptions {
    /// Description, bar, pattern, bar, ... and one more bar at the end. The patterns of one entry
    /// are separated by semicolons.
    std::wstring filter;
    bool hideReadOnly = false;
    bool overwritePrompt = false;
    std::uint32_t image = 0;
};

/// A dialog made from a template: the window and its controls. Control ids that the template
/// does not hold are ignored, and their texts are empty.
class Dialog : public DialogSurface {
public:
    static constexpr int kConfirmed = 1;
    static constexpr int kCancelled = 2;

    ~Dialog() override;

    virtual std::wstring text(int controlId) const = 0;
    virtual void setText(int controlId, const std::wstring& text) = 0;
    virtual bool enabled(int controlId) const = 0;
    virtual void enable(int controlId, bool enabled) = 0;
    virtual void setFocus(int controlId) = 0;
    /// Hint text of an empty edit; `whileFocused`: also while it has the focus.
    virtual void setCueBanner(int controlId, const std::wstring& text, bool whileFocused) = 0;
    virtual void setBrowse(int controlId, const BrowseOptions& options) = 0;
    /// Null when the control is no tree. Belongs to the dialog.
    virtual TreeControl* tree(int controlId) = 0;

    /// Shows the dialog modally and returns what endModal() was given.
    virtual int runModal(DialogEvents& events) = 0;
    virtual void endModal(int result) = 0;

    /// Creates the window without showing it; onInitDialog() has been called when it returns.
    virtual void createModeless(DialogEvents& events) = 0;
    virtual bool hasWindow() const = 0;
    virtual void destroyWindow() = 0;
    /// Shows or hides without a change of size, position or stacking order.
    virtual void show(bool visible) = 0;
    virtual bool visible() const = 0;
    virtual void bringToForeground() = 0;
};

}  // namespace ui
