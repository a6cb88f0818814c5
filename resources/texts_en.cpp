#include "resources/texts.h"

#include "resources/string_ids.h"

namespace resources {
namespace {

constexpr Text kTexts[] = {
    {id::kReferenceCue, L"<provide reference file name>"},
    {id::kCompareCue, L"<provide compare file name>"},
    {id::kAllFilesFilter, L"All Files (*.*)|*.*||"},
    {id::kEqualPaths, L"Please provide different reference and compare file name"},
    {id::kToolsPanel, L"Tools"},
    {id::kCompare, L"Compare"},
    {id::kCompareDescription,
     L"Select two variations of a model to compute differences in 3D geometry"},
    {id::kComparing, L"Comparing..."},
    {id::kResultCaption, L"Compare Models - Bextora"},
    {id::kComparisonCompleted, L"Comparison completed"},
    {id::kFailedToOpen, L"Failed to open "},
    {id::kElapsedIn, L" in "},
    {id::kSeconds, L" seconds"},
    {id::kMilliseconds, L" milliseconds"},
    {id::kIsAssembly, L" is an assembly file."},
    {id::kIsPart, L" is a part file."},
    {id::kMismatch, L"Comparing a part with an assembly is not supported."},
    {id::kMismatchCaption, L"Compare Models"},
    {id::kReady, L"Ready"},
    {id::kComparisonFailed, L"Comparison failed."},
    {id::kOpenElement, L"&Open..."},
    {id::kCompareFiles, L"Compare Files"},
    {id::kReferenceFile, L"Reference File"},
    {id::kCompareFile, L"Compare File"},
    {id::kFrameUnavailable, L"Bextora failed to open nfile"},
    {id::kQuantity, L"Quantity"},
    {id::kPartName, L"Part Name"},
    {id::kName, L"Name"},
    {id::kValue, L"Value"},
    {id::kProductStructure, L"Product Structure"},
    {id::kBillOfMaterials, L"Bill of Materials"},
    {id::kSettingsKey, L"Software\\Bextora\\bextora\\Settings\\Compare"},
    {id::kPsCompare, L"PSCompare"},
    {id::kPmiCompare, L"PMICompare"},
    {id::kAttribCompare, L"AttribCompare"},
    {id::kPsCompareReport, L"PSCompareReport"},
    {id::kPmiCompareReport, L"PMICompareReport"},
    {id::kAttribCompareReport, L"AttribCompareReport"},
    {id::kThreeDReport, L"3DReport"},
    {id::kIncludeRefFile, L"IncludeRefFile"},
    {id::kIncludeCmpFile, L"IncludeCmpFile"},
    {id::kFileInformation, L"File Information"},
    {id::kPmiName, L"PMI Name"},
    {id::kProperty, L"Property"},
    {id::kReference, L"Reference"},
    {id::kAssembly, L"Assembly"},
    {id::kPart, L"Part"},
    {id::kAttributes, L"Attributes"},
    {id::kPmi, L"PMI"},
};

}  // namespace

std::span<const Text> englishTexts() {
    return kTexts;
}

}  // namespace resources
