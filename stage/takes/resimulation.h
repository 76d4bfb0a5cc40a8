#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Stage {

class CurveCopy;
class Session;
struct Setting;

struct ResimulationRun {
    double seconds = 0.0;    ///< how long it ran
    bool isOffGrid = false;  ///< its frames count from the start, not from 0 as those of a take
    bool isCutShort = false; ///< `isToStop` ended it; the frames until then are kept
};

/// Simulates the span again with some parameters changed, and restores these afterwards. Calls
/// `isToStop` at each key; once that returns true the present frame is the last. Calls `atEnd`
/// while the parameters are still changed. Returns nothing, with the reason in `error` and without
/// that call, if the core can't.
std::optional<ResimulationRun> resimulate(Session& session, double start, double end,
                                          const std::vector<Setting>& settings, std::string& error,
                                          const std::function<bool()>& isToStop = {},
                                          const std::function<void()>& atEnd = {});

/// Removes the latest take by one undo and restores it by one redo. Returns false, with the reason
/// in `error`, if that doesn't result in `before` and then the present curves again.
[[nodiscard]] bool checkUndo(Session& session, const CurveCopy& before, std::string& error);

} // namespace Stage
