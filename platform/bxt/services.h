#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bxt {

/// Texts of one module by id.
class StringTable {
public:
    virtual ~StringTable() = default;
    /// Text of `id` in a language (two letters); empty when the table has none.
    virtual std::optional<std::wstring> text(std::uint32_t id,
                                             const std::wstring& language) const = 0;
};

/// What stands behind this folder's static helpers.
struct Services {
    /// The table of "compareplugin.dll"; `resources/` installs it.
    std::shared_ptr<const StringTable> strings;
    /// Two-letter code of the user's language.
    std::wstring language = L"en";
    int dotsPerInch = 96;
    bool viewerForDrawings = false;
    /// Category and action of a command that was used; empty in a host that does not count.
    std::function<void(const std::wstring&, const std::wstring&)> commandEvent;
    /// Lower-case extensions with their dot that mean a drawing.
    std::vector<std::wstring> drawingExtensions = {L".dwg", L".dxf",  L".dwf", L".dwfx",
                                                   L".plt", L".hpgl", L".cgm"};
};

Services& services();

}  // namespace bxt
