#include <fstream>
#include <iterator>

#include "tests/unit/reports/csv_fixture.h"

namespace {

using reports::BuildColumnTable;
using reports::ReportContent;

class CsvReport : public CsvTest {
protected:
    std::string save(const ReportContent& content) {
        EXPECT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", content), 0);
        return disk->files.at(L"/r.csv");
    }
    static ReportContent full() {
        ReportContent content;
        content.fileInfo = BuildColumnTable({L"File Path", L"File Name", L"Volume", L"Difference"},
                                            {L"/b", L"b.stp", L"2.00 mm\u00b3", L"+ 100.00 %"},
                                            {L"File Path", L"File Name", L"Volume", L"Difference"},
                                            {L"/a", L"a.stp", L"1.00 mm\u00b3", L"-"});
        content.productStructure =
            BuildColumnTable({L"Top", L"  Bolt, M8", L"  Nut"}, {L"Modified", L"Same", L"Added"},
                             {L"Top", L"  Bolt, M8", L""}, {L"Modified", L"Same", L""});
        content.bom = BuildColumnTable({L"Bolt, M8", L"Nut"}, {L"2", L"1"}, {L"Bolt, M8"}, {L"2"});
        content.attributes = BuildColumnTable({L"Author"}, {L"M\u00fcller"}, {L"Author", L"Note"},
                                              {L"\u5c71\u7530", L"3/8\" bolt\nsecond line"});
        content.referenceParts = {partOf(L"Bolt, M8", {{L"Mass", L"1", {}}})};
        content.compareParts = {partOf(L"Bolt, M8", {{L"Mass", L"2", {}}, {L"Finish", L"", {}}})};
        content.pmi = BuildColumnTable({L"Datum 1"}, {L"A"}, {L"No PMI"}, {L"-"});
        return content;
    }
};

TEST_F(CsvReport, OfEverySectionReadsAsTheGoldenFile) {
    std::ifstream in(BEXTORA_GOLDEN "/csv/report.csv", std::ios::binary);
    ASSERT_TRUE(in);
    const std::string golden{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(save(full()), golden);
    EXPECT_EQ(disk->closed, 1);
}

TEST_F(CsvReport, BeginsWithTheOneMarkAndEndsLinesWithThreeBytes) {
    const std::string bytes = save(full());
    EXPECT_EQ(bytes.substr(0, 3), "\xEF\xBB\xBF");
    EXPECT_EQ(bytes.find("\xEF\xBB\xBF", 1), std::string::npos);
    EXPECT_EQ(bytes.substr(3, 14), "Information\r\r\n");
    EXPECT_EQ(bytes.substr(bytes.size() - 6), "\r\r\n\r\r\n");
}

TEST_F(CsvReport, FileInformationIsWrittenEvenWithoutRows) {
    ReportContent content;
    content.fileInfo = BuildColumnTable({}, {}, {}, {});
    EXPECT_EQ(save(content),
              "\xEF\xBB\xBFInformation\r\r\n"
              "\"Index\",\"Reference File File Attributes\",\"Reference File Value\","
              "\"Index\",\"Compare File File Attributes\",\"Compare File Value\"\r\r\n\r\r\n");
    content.fileInfo.pop_back();
    EXPECT_EQ(save(content), "\xEF\xBB\xBF");
}

TEST_F(CsvReport, EmptySectionsLeaveNoTrace) {
    ReportContent content = full();
    content.attributes = BuildColumnTable({}, {L"x"}, {}, {});
    content.referenceParts.clear();
    content.compareParts.clear();
    content.bom.clear();
    content.productStructure = {};
    const std::string bytes = save(content);
    EXPECT_EQ(bytes.find("Attributes\r"), std::string::npos);
    EXPECT_EQ(bytes.find("Part Level"), std::string::npos);
    EXPECT_EQ(bytes.find("Bill"), std::string::npos);
    EXPECT_EQ(bytes.find("Product"), std::string::npos);
    EXPECT_EQ(bytes.find("\r\r\n\r\r\n\r\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("PMI\r\r\n"), std::string::npos);
}

TEST_F(CsvReport, PartsOfOneSideAreEnough) {
    ReportContent content;
    content.compareParts = {partOf(L"P", {})};
    EXPECT_NE(save(content).find("Part Level Attributes\r\r\n"), std::string::npos);
}

TEST_F(CsvReport, NoByteDependsOnTheStates) {
    reports::CsvReportWriter writer;
    reports::RowStates states;
    states.pmiCompare = {extract::ItemDiffState::Different};
    writer.SetRowStates(states);
    EXPECT_EQ(writer.rowStates().pmiCompare, states.pmiCompare);
    ASSERT_EQ(writer.WriteCsvReport(L"/s.csv", full()), 0);
    EXPECT_EQ(disk->files.at(L"/s.csv"), save(full()));
}

TEST_F(CsvReport, AFileThatCannotBeOpenedFailsAndNothingIsWritten) {
    disk->refused.insert(L"/r.csv");
    EXPECT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", full()), -1);
    EXPECT_TRUE(disk->files.empty());
    os::services().writer.reset();
    EXPECT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", full()), -1);
}

TEST_F(CsvReport, AFullDiskCountsAsWrittenButTheFileLayerKnows) {
    disk->room = 100;
    EXPECT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", full()), 0);
    EXPECT_EQ(disk->files.at(L"/r.csv").size(), 100U);
    EXPECT_TRUE(disk->takeFailure());
}

}  // namespace
