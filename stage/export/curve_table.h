#pragma once

#include "stage/scene/stage_node.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Stage {

/// The times at which any of the curves from `first` up to `end` (not included) has a key, rising.
std::vector<double> keyTimes(const Curves& curves, std::size_t first, std::size_t end);

/// The curves as a table for plotting: "node", "time" and kCurveNames, a line for each node and
/// key time, the values as they were written, to the last bit. A curve without a key at that time
/// leaves its field empty. Names are quoted.
std::string toCurveTable(const std::vector<const StageNode*>& nodes);

} // namespace Stage
