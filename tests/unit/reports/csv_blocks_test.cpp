#include "tests/unit/reports/csv_fixture.h"

namespace {

using reports::Column;
using reports::CsvReportWriter;
using reports::CsvStream;

constexpr const char* kEnd = "\r\r\n";

std::string lines(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += text + kEnd;
    return all;
}

class CsvBlocks : public CsvTest {
protected:
    std::string table(const Column& leftNames, const Column& leftValues, const Column& rightNames,
                      const Column& rightValues, bool indexed = true) {
        return written([&](CsvStream& stream) {
            CsvReportWriter::WriteTableBlock(stream, L"Title", {L"i", L"n", L"v"},
                                             {L"I", L"N", L"V"}, leftNames, leftValues, rightNames,
                                             rightValues, indexed);
        });
    }
    std::string tree(const Column& reference, const Column& compare) {
        return written([&](CsvStream& stream) {
            CsvReportWriter::WriteProductStructureBlock(stream, reference, {}, compare);
        });
    }
    std::string parts(const std::vector<extract::PartAttributes>& reference,
                      const std::vector<extract::PartAttributes>& compare) {
        return written([&](CsvStream& stream) {
            CsvReportWriter::WritePartAttributeBlock(stream, reference, compare);
        });
    }
    const std::string partHeader = lines(
        {"Part Level Attributes",
         R"("Index","Reference File Name","Reference File Value","Index","Compare File Name","Compare File Value")"});
};

TEST_F(CsvBlocks, FieldsAreQuotedAndTheirQuotesDoubled) {
    EXPECT_EQ(CsvReportWriter::QuoteCsvField(L""), L"\"\"");
    EXPECT_EQ(CsvReportWriter::QuoteCsvField(L"a"), L"\"a\"");
    EXPECT_EQ(CsvReportWriter::QuoteCsvField(L"\""), L"\"\"\"\"");
    EXPECT_EQ(CsvReportWriter::QuoteCsvField(L"3\" x, y\r\n"), L"\"3\"\" x, y\r\n\"");
}

TEST_F(CsvBlocks, LeadingBlanksAreTheDepthOfALine) {
    const Column texts = {L"a", L"  b",  L"   c", L"     d ",
                          L"",  L"    ", L"\te",  L"\u00a0\u00a0f"};
    const auto parsed = CsvReportWriter::ParseIndentedLines(texts);
    ASSERT_EQ(parsed.size(), 8U);
    const int depths[] = {0, 1, 1, 2, 0, 2, 0, 0};
    const wchar_t* const rest[] = {L"a", L"b", L"c", L"d ", L"", L"", L"\te", L"\u00a0\u00a0f"};
    for (std::size_t i = 0; i < parsed.size(); ++i) {
        EXPECT_EQ(parsed[i].depth, depths[i]) << i;
        EXPECT_EQ(parsed[i].text, rest[i]) << i;
    }
}

TEST_F(CsvBlocks, EveryLineFeedPassesTheTextLayer) {
    EXPECT_EQ(written([](CsvStream& stream) { stream.Put(L"a\nb\r\nc\r"); }), "a\r\nb\r\r\nc\r");
}

TEST_F(CsvBlocks, TextsAreUtf8AndWhatIsNoTextIsReplaced) {
    EXPECT_EQ(written([](CsvStream& stream) { stream.Put(L"\u00fc\u65e5\U0001F600"); }),
              "\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80");
    const std::wstring raw = {static_cast<wchar_t>(0xDC80), static_cast<wchar_t>(0xD800), L'x'};
    EXPECT_EQ(written([&](CsvStream& stream) { stream.Put(raw); }), "\xEF\xBF\xBD\xEF\xBF\xBDx");
}

TEST_F(CsvBlocks, TheIndexStandsOnBothSidesOfEveryRow) {
    EXPECT_EQ(table({L"Pin", L"Bolt"}, {L"1", L"2"}, {L"Pin", L"Bolt", L"Nut"}, {L"1", L"4", L"1"}),
              lines({"Title", R"("i","n","v","I","N","V")", R"("1","Pin","1","1","Pin","1")",
                     R"("2","Bolt","2","2","Bolt","4")", R"("3","","","3","Nut","1")", ""}));
}

TEST_F(CsvBlocks, AShorterListGivesEmptyFields) {
    EXPECT_EQ(table({L"a", L"b"}, {L"1"}, {}, {L"never"}),
              lines({"Title", R"("i","n","v","I","N","V")", R"("1","a","1","1","","never")",
                     R"("2","b","","2","","")", ""}));
}

TEST_F(CsvBlocks, WithoutIndexThereAreFourFields) {
    EXPECT_EQ(table({L"a"}, {L"1"}, {L"b"}, {L"2"}, false),
              lines({"Title", R"("n","v","N","V")", R"("a","1","b","2")", ""}));
}

TEST_F(CsvBlocks, WithoutRowsTheHeaderAndAnEmptyLineStay) {
    EXPECT_EQ(table({}, {L"x"}, {}, {}), lines({"Title", R"("i","n","v","I","N","V")", ""}));
}

TEST_F(CsvBlocks, CommasQuotesAndLineBreaksStayInsideTheirFields) {
    EXPECT_EQ(table({L"a,b"}, {L"3\""}, {L"x\r\ny"}, {L"p\nq"}),
              lines({"Title", R"("i","n","v","I","N","V")",
                     "\"1\",\"a,b\",\"3\"\"\",\"1\",\"x\r\r\ny\",\"p\r\nq\"", ""}));
}

TEST_F(CsvBlocks, AFlatLeftTreePutsTheRightTopLevelIntoColumnTwo) {
    EXPECT_EQ(tree({L"A"}, {L"A", L"  B"}),
              lines({"Product Structure", R"("A",,"A",)", R"(,,,"B")", ""}));
}

TEST_F(CsvBlocks, TreesOfDifferentDepthStandSideBySide) {
    EXPECT_EQ(tree({L"Top", L"  Sub", L"    Leaf", L""}, {L"Top", L"  Sub", L"", L"  New"}),
              lines({"Product Structure", R"("Top",,,,"Top",)", R"(,"Sub",,,,"Sub")",
                     R"(,,"Leaf",,,)", R"(,,,,,"New")", ""}));
}

TEST_F(CsvBlocks, ALineOfBlanksAloneCountsAsNoneButForTheDepth) {
    EXPECT_EQ(tree({L"A", L"    "}, {L"B"}),
              lines({"Product Structure", R"("A",,,,"B")", ",,,,", ""}));
}

TEST_F(CsvBlocks, PartsComeByNameAndTheirKeysInOrder) {
    EXPECT_EQ(parts({partOf(L"P", {{L"k", L"1", {}}, {L"m", L"2", {}}})},
                    {partOf(L"Q", {{L"z", L"9", {}}}),
                     partOf(L"P", {{L"n", L"3", {}}, {L"m", L"4", {}}})}),
              partHeader + lines({R"("P",,,,,)", R"("1","k","1","1","k","")",
                                  R"("2","m","2","2","m","4")", R"("3","n","","3","n","3")", "",
                                  R"("Q",,,,,)", R"("1","z","","1","z","9")", ""}));
}

TEST_F(CsvBlocks, PartNamesAreMatchedWithCase) {
    EXPECT_EQ(parts({partOf(L"bolt", {})}, {partOf(L"Bolt", {}), partOf(L"Bolt", {})}),
              partHeader + lines({R"("bolt",,,,,)", "", R"("Bolt",,,,,)", ""}));
}

TEST_F(CsvBlocks, ARepeatedReferencePartShowsTheFirstRecordTwice) {
    EXPECT_EQ(parts({partOf(L"P", {{L"k", L"1", {}}}), partOf(L"P", {{L"k", L"2", {}}})}, {}),
              partHeader + lines({R"("P",,,,,)", R"("1","k","1","1","k","")", "", R"("P",,,,,)",
                                  R"("1","k","1","1","k","")", ""}));
}

TEST_F(CsvBlocks, OfEqualKeysTheFirstValueCountsAndReferenceKeysRepeat) {
    EXPECT_EQ(parts({partOf(L"P", {{L"k", L"1", {}}, {L"k", L"2", {}}})},
                    {partOf(L"P", {{L"x", L"3", {}}, {L"x", L"4", {}}})}),
              partHeader + lines({R"("P",,,,,)", R"("1","k","1","1","k","")",
                                  R"("2","k","1","2","k","")", R"("3","x","","3","x","3")", ""}));
}

}  // namespace
