#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "results/result_section.h"

namespace results {

constexpr std::size_t kSectionCount = 5;

/// What belongs to one section of the dialog.
struct SectionInfo {
    ResultSection section = ResultSection::FileInformation;
    std::uint32_t captionId = 0;
    int leftControl = 0;
    int rightControl = 0;
    int leftLabel = 0;
    int rightLabel = 0;
};

/// All sections in the order of their numbers.
const std::array<SectionInfo, kSectionCount>& AllSections();

const SectionInfo& InfoOf(ResultSection section);

/// The section's name in the user's language.
std::wstring CaptionOf(ResultSection section);

}  // namespace results
