#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Stage {

class CurveCopy;
class Session;
struct Setting;

/// Simulates the span again with some settings changed, which are put back afterwards. Returns how
/// long it took in seconds; nothing, with the reason in `error`, if the core can't.
std::optional<double> resimulate(Session& session, double start, double end,
                                 const std::vector<Setting>& settings, std::string& error);

/// Takes the latest take away with one undo and brings it back with one redo. False, with what went
/// wrong in `error`, if that doesn't give `before` and then the present curves again.
[[nodiscard]] bool checkUndo(Session& session, const CurveCopy& before, std::string& error);

} // namespace Stage
