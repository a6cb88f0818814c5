#pragma once

#include <string>

#include "platform/hps/metadata.h"

namespace extract {

/// Value of one metadata object as text: numbers in decimal, floating ones with 17 significant
/// digits, "true" or "false", and times as their raw number. Empty for an empty handle and for a
/// kind that has no typed view. The same value gives the same text whatever the locale.
void MetadataValueToText(const HPS::Metadata& metadata, std::wstring& text);

/// The text with control characters and most of the special blanks as plain blanks, without white
/// space at either end and without two blanks in a row: texts of different systems compare.
std::wstring CleanAttributeText(std::wstring text);

}  // namespace extract
