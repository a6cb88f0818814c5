#include "results/section_info.h"

#include "resources/dialog_templates.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace results {

namespace id = resources::id;

const std::array<SectionInfo, kSectionCount>& AllSections() {
    using namespace resources::results_dialog;
    static constexpr std::array<SectionInfo, kSectionCount> kSections = {{
        {ResultSection::FileInformation, id::kFileInformation, kReferenceFileInfo, kCompareFileInfo,
         kReferenceFileInfoLabel, kCompareFileInfoLabel},
        {ResultSection::BillOfMaterials, id::kBillOfMaterials, kReferenceBom, kCompareBom,
         kReferenceBomLabel, kCompareBomLabel},
        {ResultSection::Attributes, id::kAttributes, kReferenceAttributes, kCompareAttributes,
         kReferenceAttributesLabel, kCompareAttributesLabel},
        {ResultSection::Pmi, id::kPmi, kReferencePmi, kComparePmi, kReferencePmiLabel,
         kComparePmiLabel},
        {ResultSection::ProductStructure, id::kProductStructure, kReferenceTree, kCompareTree,
         kReferenceTreeLabel, kCompareTreeLabel},
    }};
    return kSections;
}

const SectionInfo& InfoOf(ResultSection section) {
    return AllSections()[static_cast<std::size_t>(section)];
}

std::wstring CaptionOf(ResultSection section) {
    return resources::text(InfoOf(section).captionId);
}

}  // namespace results
