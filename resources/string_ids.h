#pragma once

#include <cstdint>

/// Ids of the module's texts. The numbers are fixed: translations and the host's command map
/// refer to them.
namespace resources::id {

// File pair dialog
constexpr std::uint32_t kReferenceCue = 130;
constexpr std::uint32_t kCompareCue = 131;
constexpr std::uint32_t kAllFilesFilter = 132;
constexpr std::uint32_t kEqualPaths = 133;

// Ribbon
constexpr std::uint32_t kToolsPanel = 136;
constexpr std::uint32_t kCompare = 137;
constexpr std::uint32_t kCompareDescription = 138;
constexpr std::uint32_t kOpenElement = 209;
constexpr std::uint32_t kCompareFiles = 211;

// Compare run
constexpr std::uint32_t kComparing = 140;
constexpr std::uint32_t kResultCaption = 141;
constexpr std::uint32_t kComparisonCompleted = 142;
constexpr std::uint32_t kFailedToOpen = 143;
constexpr std::uint32_t kElapsedIn = 144;
constexpr std::uint32_t kSeconds = 145;
constexpr std::uint32_t kMilliseconds = 146;
constexpr std::uint32_t kIsAssembly = 148;
constexpr std::uint32_t kIsPart = 149;
constexpr std::uint32_t kMismatch = 152;
constexpr std::uint32_t kMismatchCaption = 153;
constexpr std::uint32_t kReady = 154;
constexpr std::uint32_t kComparisonFailed = 192;
constexpr std::uint32_t kFrameUnavailable = 230;

// Settings store: key and value names
constexpr std::uint32_t kSettingsKey = 1220;
constexpr std::uint32_t kPsCompare = 1221;
constexpr std::uint32_t kPmiCompare = 1222;
constexpr std::uint32_t kAttribCompare = 1223;
constexpr std::uint32_t kPsCompareReport = 1234;
constexpr std::uint32_t kPmiCompareReport = 1235;
constexpr std::uint32_t kAttribCompareReport = 1236;
constexpr std::uint32_t kThreeDReport = 1243;
constexpr std::uint32_t kIncludeRefFile = 1244;
constexpr std::uint32_t kIncludeCmpFile = 1245;

// Results dialog
constexpr std::uint32_t kCopiedAttributes = 159;
constexpr std::uint32_t kReferenceFile = 221;
constexpr std::uint32_t kCompareFile = 222;
constexpr std::uint32_t kCopiedFileInformation = 223;
constexpr std::uint32_t kQuantity = 231;
constexpr std::uint32_t kPartName = 232;
constexpr std::uint32_t kRowNumber = 233;
constexpr std::uint32_t kName = 240;
constexpr std::uint32_t kValue = 241;
constexpr std::uint32_t kCopiedPmiValue = 242;
constexpr std::uint32_t kCopiedPmi = 249;
constexpr std::uint32_t kProductStructure = 275;
constexpr std::uint32_t kCopiedFileValue = 307;
constexpr std::uint32_t kBillOfMaterials = 1160;
constexpr std::uint32_t kSaving = 1164;
constexpr std::uint32_t kResultsSaved = 1165;
constexpr std::uint32_t kFailedToSave = 1166;
constexpr std::uint32_t kResultsCopied = 1167;
constexpr std::uint32_t kFailedToCopy = 1168;
constexpr std::uint32_t kFileInformation = 1330;
constexpr std::uint32_t kPmiName = 1331;
constexpr std::uint32_t kProperty = 1332;
constexpr std::uint32_t kReference = 1333;
constexpr std::uint32_t kAssembly = 1344;
constexpr std::uint32_t kPart = 1345;
constexpr std::uint32_t kAttributes = 1347;
constexpr std::uint32_t kPmi = 1348;

// Reports
constexpr std::uint32_t kIndex = 1150;
constexpr std::uint32_t kReportAttributes = 1151;
constexpr std::uint32_t kReportQuantity = 1152;
constexpr std::uint32_t kReportPartName = 1153;
constexpr std::uint32_t kReportReferenceFile = 1156;
constexpr std::uint32_t kReportCompareFile = 1157;
constexpr std::uint32_t kReportPmi = 1158;
constexpr std::uint32_t kReportValue = 1159;
constexpr std::uint32_t kInformation = 1162;
constexpr std::uint32_t kFileAttributes = 1163;
constexpr std::uint32_t kPartLevelAttributes = 1169;
constexpr std::uint32_t kReportProductStructure = 1346;

}  // namespace resources::id
