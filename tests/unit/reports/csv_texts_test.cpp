#include "tests/support/numbered_texts.h"
#include "tests/unit/reports/csv_fixture.h"

namespace {

using reports::BuildColumnTable;

TEST_F(CsvTest, TitlesAndHeadersTakeTheirOwnTexts) {
    support::NumberedTexts::use();
    reports::ReportContent content;
    content.fileInfo = content.productStructure = content.bom = content.attributes = content.pmi =
        BuildColumnTable({L"c"}, {}, {}, {});
    content.compareParts = {partOf(L"P", {})};
    ASSERT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", content), 0);
    bxt::services().strings.reset();
    const std::string end = "\r\r\n";
    const std::string row = R"("1","","","1","c","")" + end + end;
    const auto header = [&](const char* name, const char* value) {
        return std::string("\"<1150>\",\"<1156> ") + name + "\",\"<1156> " + value +
               "\",\"<1150>\",\"<1157> " + name + "\",\"<1157> " + value + "\"" + end;
    };
    EXPECT_EQ(disk->files.at(L"/r.csv").substr(3),
              "<1162>" + end + header("<1163>", "<1159>") + row +             //
                  "<1346>" + end + ",,\"c\"" + end + end +                    //
                  "<1160>" + end + header("<1153>", "<1152>") + row +         //
                  "<1151>" + end + header("<240>", "<241>") + row +           //
                  "<1169>" + end + header("<240>", "<241>") + "\"P\",,,,," +  //
                  end + end +                                                 //
                  "<1158>" + end + header("<1153>", "<1159>") + row);
}

TEST_F(CsvTest, LongFilesKeepTheirOrder) {
    reports::Column names;
    std::string expected;
    for (int i = 0; i < 3000; ++i) {
        names.push_back(L"part number " + std::to_wstring(i));
        expected += "part number " + std::to_string(i) + "\r\n";
    }
    EXPECT_EQ(written([&](reports::CsvStream& stream) {
                  for (const std::wstring& name : names) stream.Put(name + L"\n");
              }),
              expected);
}

TEST_F(CsvTest, OneNamedSideIsEnoughForABlockAndValuesAreNot) {
    reports::ReportContent content;
    content.bom = BuildColumnTable({}, {L"1"}, {}, {L"2"});
    content.productStructure = BuildColumnTable({}, {L"Same"}, {}, {L"Same"});
    content.pmi = {{L"a"}, {L"b"}, {L"c"}};
    ASSERT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", content), 0);
    EXPECT_EQ(disk->files.at(L"/r.csv"), "\xEF\xBB\xBF");
    content.productStructure = BuildColumnTable({}, {}, {L"Top"}, {});
    ASSERT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", content), 0);
    EXPECT_EQ(disk->files.at(L"/r.csv"),
              "\xEF\xBB\xBFProduct Structure\r\r\n\"Top\",,\r\r\n\r\r\n");
}

}  // namespace
