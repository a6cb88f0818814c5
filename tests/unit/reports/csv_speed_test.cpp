#include <chrono>

#include "tests/unit/reports/csv_fixture.h"

namespace {

using Clock = std::chrono::steady_clock;

class CsvSpeed : public CsvTest {
protected:
    double secondsFor(const reports::ReportContent& content) {
        const auto start = Clock::now();
        EXPECT_EQ(reports::CsvReportWriter().WriteCsvReport(L"/r.csv", content), 0);
        return std::chrono::duration<double>(Clock::now() - start).count();
    }
    static reports::ReportContent rows(std::size_t count) {
        reports::Column names;
        for (std::size_t i = 0; i < count; ++i) names.push_back(L"Part " + std::to_wstring(i));
        reports::ReportContent content;
        content.bom = reports::BuildColumnTable(names, names, names, names);
        return content;
    }
    static reports::ReportContent parts(std::size_t count, std::size_t keys) {
        reports::ReportContent content;
        for (std::size_t i = 0; i < count; ++i) {
            std::vector<extract::AttributeEntry> entries;
            for (std::size_t k = 0; k < keys; ++k) {
                entries.push_back({L"Key " + std::to_wstring(k), L"value", {}});
            }
            content.referenceParts.push_back(partOf(L"P" + std::to_wstring(i), entries));
        }
        content.compareParts = content.referenceParts;
        return content;
    }
    /// Ten times the work may take at most this much longer, on a machine with other work to do.
    static constexpr double kMostTimes = 30;
};

// A quadratic look-up would take a hundred times as long.
TEST_F(CsvSpeed, TakesLinearTimeForRowsPartsAndKeys) {
    const std::pair<reports::ReportContent, reports::ReportContent> cases[] = {
        {rows(2'000), rows(20'000)},
        {parts(200, 10), parts(2'000, 10)},
        {parts(1, 2'000), parts(1, 20'000)},
    };
    for (const auto& [small, large] : cases) {
        const double few = secondsFor(small);
        const double many = secondsFor(large);
        RecordProperty("few", std::to_string(few));
        RecordProperty("many", std::to_string(many));
        EXPECT_LT(many, few * kMostTimes) << few << " s, then " << many << " s";
    }
}

}  // namespace
