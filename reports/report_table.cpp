#include "reports/report_table.h"

namespace reports {

ReportTable BuildColumnTable(const Column& compareNames, const Column& compareValues,
                             const Column& referenceNames, const Column& referenceValues) {
    return {compareNames, compareValues, referenceNames, referenceValues};
}

bool HasAllColumns(const ReportTable& table) {
    return table.size() >= column::kCount;
}

bool IsEmptyTable(const ReportTable& table) {
    return !HasAllColumns(table) ||
           (table[column::kCompareName].empty() && table[column::kReferenceName].empty());
}

}  // namespace reports
