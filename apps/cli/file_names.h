#pragma once

#include <map>
#include <string>

namespace cli {

/// The file prompt takes every double quote out of what is typed, so a name that really holds
/// one can't be typed. Such a file gets a link without quotes in a private folder, and the link
/// is typed instead.
class FileNames {
public:
    /// What to type for a file of that name: the name itself where that works. Equal names get
    /// equal answers. Empty when a link was needed and could not be made.
    std::string typed(const std::string& given);

    /// Whether any name needed a link.
    bool hasLinks() const { return !linkOfName_.empty(); }

    /// The text with every link in it replaced by the name that the user gave.
    std::string withGivenNames(std::string text) const;

private:
    std::map<std::string, std::string> linkOfName_;
};

}  // namespace cli
