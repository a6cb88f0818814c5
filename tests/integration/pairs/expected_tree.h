#pragma once

#include <string>
#include <vector>

#include "tests/support/compare_report.h"

/// Trees and rows as a reader of the files would write them down.
namespace pairs {

/// One node per line: two blanks of indent per depth, the name, " | " and the state.
std::string drawn(const std::vector<support::ReportNode>& tree);

/// One line per row: reference name and state, " <> ", compare name and state; "-" for a gap.
std::vector<std::string> drawnRows(const support::CompareReport& report);

/// The lines of a drawing without the first, empty one; what a raw string begins with.
std::string drawing(const char* text);

/// Compares the two files through the program and reads its report; a run that is not in order
/// or finds no difference fails the test.
void compareDifferingFiles(const std::string& reference, const std::string& compare,
                           support::CompareReport& report);

}  // namespace pairs
