#pragma once

#include <string>
#include <string_view>

#include "platform/hps/component.h"

namespace extract {

/// Name of a component as a wide string; empty when it has none.
std::wstring ReadName(const HPS::Component& component);

/// Text of the scene library as a wide string, up to its first zero character.
std::wstring ReadText(const HPS::UTF8& text);

/// The whole text of the component's metadata "Filename"; empty when there is no such metadata or
/// it is no text. Exceptions of the provider pass through.
std::wstring ReadFileName(const HPS::Component& component);

/// Stem of the file that the component's metadata "Filename" names. Empty when there is no such
/// metadata or it can't be read; never throws.
std::wstring GetFileStem(const HPS::Component& component);

/// The text after the last slash or backslash, cut at its last full stop unless that is its
/// first character.
std::wstring_view StemOfPath(std::wstring_view path);

/// The text up to its first '(' without white space at either end; the text itself when nothing
/// would be left of it.
std::wstring_view StripInstanceSuffix(std::wstring_view text);

/// The text without space, tab, CR and LF at either end. Other white space counts as text.
std::wstring_view TrimBlanks(std::wstring_view text);

}  // namespace extract
