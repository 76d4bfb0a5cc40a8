#pragma once

#include "stage/scene/curve_copy.h"
#include "stage/takes/take.h"

#include <optional>
#include <string>
#include <vector>

namespace Stage {

class StageNode;

/// What a resimulation gave, beside the take.
struct ResimulationFigures {
    std::vector<std::string> settings; ///< what was changed
    CurveCopy::Difference difference;  ///< to the take
    double seconds = 0.0;              ///< it took
    double timesRealTime = 0.0;        ///< scene time through time taken; 0 if cut short
    bool isCutShort = false;           ///< stopped by the user; the frames done are kept
};

/// All that a run of `record` measured.
struct Report {
    double rate = 0.0;
    double start = 0.0;
    TakeFigures take;
    std::vector<const StageNode*> nodes; ///< keys are counted when toJson() is called
    std::optional<bool> isUndoGood;      ///< nothing if it was not checked
    std::vector<ResimulationFigures> resimulations;
};

struct ResimulationRun;
struct Setting;

/// The figures of a run over `span` seconds of scene time.
ResimulationFigures describe(const std::vector<Setting>& settings,
                             const CurveCopy::Difference& difference, const ResimulationRun& run,
                             double span);

/// The figures as lines for a person.
std::string toTable(const ResimulationFigures& figures);

/// The report as JSON text. Times are seconds unless the name says "ms".
std::string toJson(const Report& report);

/// The report as lines for a person.
std::string toTable(const Report& report);

} // namespace Stage
