#pragma once

#include <string_view>
#include <vector>

#include "extract/attributes.h"

namespace diff {

/// Pairs the records of two sides by name without regard to case, instances of one name in list
/// order, and writes all states and isDifferent of both sides. Attributes of a pair are compared
/// by key without regard to case and by value exactly.
///
/// Of a pair in which only one record has subcomponents, that one counts as one-sided with all
/// its attributes, and the other stays unchanged. The state of a record only ever says that it
/// is one-sided. Source files take no part. Takes time linear in the records and attributes.
void ComparePartAttributes(std::vector<extract::PartAttributes>& reference,
                           std::vector<extract::PartAttributes>& compare);

/// The keys of a pair in the order of display: all of the reference record's, then those that
/// only the compare record has. Either may be null. The texts belong to the records. Linear.
std::vector<std::wstring_view> KeysOf(const extract::PartAttributes* reference,
                                      const extract::PartAttributes* compare);

}  // namespace diff
