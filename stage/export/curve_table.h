#pragma once

#include "stage/scene/stage_node.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Stage {

/// Returns the times, rising, at which any of the curves from `first` up to `end` (excluded) has a
/// key.
std::vector<double> keyTimes(const Curves& curves, std::size_t first, std::size_t end);

/// Returns the curves as a table for plotting: "node", "time" and kCurveNames, a line for each node
/// and key time, with the exact values. The field of a curve without a key at that time is empty.
/// Names are quoted.
std::string toCurveTable(const std::vector<const StageNode*>& nodes);

} // namespace Stage
