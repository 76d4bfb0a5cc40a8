// The order in which the tools of a take run.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace MVR {

class AdaptorInterface;
class CInterface;

/// Returns the indices of `tools` in an order in which a tool runs after those whose scene nodes
/// its own are below, so that it reads its parent's new position. Otherwise the order stays; a tool
/// that is listed twice runs once. Handles any depth, in time proportional to the scene nodes.
///
/// `nameOf` returns the name of the tool at an index, for the log; it is called only if the log is
/// that detailed. `isThere` tells whether that tool is still there, as the host may end some when
/// it is asked; its nodes are left alone then, and its index stays in the result.
[[nodiscard]] std::vector<std::size_t>
findRunOrder(AdaptorInterface& host, const std::vector<CInterface*>& tools,
             const std::function<std::string(std::size_t)>& nameOf,
             const std::function<bool(std::size_t)>& isThere);

} // namespace MVR
