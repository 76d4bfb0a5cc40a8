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
    double seconds = 0.0;    ///< how long it took
    bool isCutShort = false; ///< `isToStop` ended it; what was done until then is kept
};

/// Simulates the span again with some settings changed, which are put back afterwards. `isToStop`
/// is asked at each key; once it is true the present frame is the last. Nothing, with the reason in
/// `error`, if the core can't.
std::optional<ResimulationRun> resimulate(Session& session, double start, double end,
                                          const std::vector<Setting>& settings, std::string& error,
                                          const std::function<bool()>& isToStop = {});

/// Takes the latest take away with one undo and brings it back with one redo. False, with what went
/// wrong in `error`, if that doesn't give `before` and then the present curves again.
[[nodiscard]] bool checkUndo(Session& session, const CurveCopy& before, std::string& error);

} // namespace Stage
