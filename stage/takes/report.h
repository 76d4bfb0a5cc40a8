#pragma once

#include "stage/scene/curve_copy.h"
#include "stage/takes/take.h"

#include <optional>
#include <string>
#include <vector>

namespace Stage {

class StageNode;

/// The result of a resimulation, compared with the take.
struct ResimulationFigures {
    std::vector<std::string> settings; ///< its changes
    CurveCopy::Difference difference;  ///< to the take
    double seconds = 0.0;              ///< how long it ran
    double timesRealTime = 0.0;        ///< scene time by `seconds`; 0 if cut short
    bool isOffGrid = false;            ///< its frames aren't those of the take
    bool isCutShort = false;           ///< stopped by the user; the simulated frames are kept
};

/// All measurements of a run of `record`.
struct Report {
    double rate = 0.0;
    double start = 0.0;
    TakeFigures take;
    std::vector<const StageNode*> nodes; ///< keys are counted when toJson() is called
    std::optional<bool> isUndoGood;      ///< nothing if it was not checked
    std::vector<ResimulationFigures> resimulations;
    std::vector<std::string> notes; ///< what the take lacks, in the core's words
};

struct ResimulationRun;
struct Setting;

/// Returns the figures of a run over `span` seconds of scene time.
ResimulationFigures describe(const std::vector<Setting>& settings,
                             const CurveCopy::Difference& difference, const ResimulationRun& run,
                             double span);

/// Returns the figures as lines for a person.
std::string toTable(const ResimulationFigures& figures);

/// Returns the report as JSON text. Times are seconds unless the name says "ms".
std::string toJson(const Report& report);

/// Returns the report as lines for a person.
std::string toTable(const Report& report);

} // namespace Stage
