#include "stage/takes/resimulation.h"

#include "stage/host/core_code.h"
#include "stage/host/session.h"
#include "stage/scene/curve_copy.h"
#include "unidevice/sdk/property.h"

#include <chrono>

namespace Stage {

namespace {

struct Mapping {
    UniDevice::Property* property;
    double multiplier;
    double exponent;
    double deadzone;
    double offset;
};

} // namespace

std::optional<ResimulationRun> resimulate(Session& session, double start, double end,
                                          const std::vector<Setting>& settings, std::string& error,
                                          const std::function<bool()>& isToStop) {
    std::vector<Mapping> old;
    for (const Setting& setting : settings) {
        for (UniDevice::Property* property : session.findProperties(setting)) {
            old.push_back({property, property->multiplier, property->exponent, property->deadzone,
                           property->offset});
            apply(setting, *property);
        }
    }
    ResimulationRun run;
    session.scene.setKeyListener([&](const StageNode&, double) {
        if (!run.isCutShort && isToStop && isToStop()) {
            run.isCutShort = true;
            session.getCore().stopRecording();
        }
    });
    const auto begin = std::chrono::steady_clock::now();
    const std::int32_t code = session.getCore().resimulate(start, end);
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    session.scene.setKeyListener({});
    // Last first: a property that two settings changed gets its original mapping back.
    for (auto mapping = old.rbegin(); mapping != old.rend(); ++mapping) {
        mapping->property->multiplier = mapping->multiplier;
        mapping->property->exponent = mapping->exponent;
        mapping->property->deadzone = mapping->deadzone;
        mapping->property->offset = mapping->offset;
    }
    if (code != 0) {
        error = "the core can't simulate: " + describeCode(code);
        return std::nullopt;
    }
    return run;
}

bool checkUndo(Session& session, const CurveCopy& before, std::string& error) {
    const CurveCopy after(session.scene);
    if (!session.undo.undo() || CurveCopy(session.scene) != before)
        error = "one undo did not remove the take";
    else if (!session.undo.redo() || CurveCopy(session.scene) != after)
        error = "one redo did not restore the take";
    else
        return true;
    return false;
}

} // namespace Stage
