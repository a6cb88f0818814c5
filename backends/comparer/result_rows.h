#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backends/comparer/face_report.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/matching.h"
#include "platform/exchange/geometry_result.h"

namespace comparer {

/// The matches in the form that the host reads. `faces` is of the same matches, or empty.
bxtsg::SCGeometryResult buildResult(const Side& reference, const Side& compare, const Names& names,
                                    const std::vector<Match>& matches, const Tolerances& tolerances,
                                    const FaceReport& faces = {});

/// A result as bytes: numbers to the last bit, each text and each identity once.
std::string encodeResult(const bxtsg::SCGeometryResult& result);

/// Null for bytes that encodeResult() did not make; never reads past their end.
std::shared_ptr<bxtsg::SCGeometryResult> decodeResult(const std::string& bytes);

}  // namespace comparer
