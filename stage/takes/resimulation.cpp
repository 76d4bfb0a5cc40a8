#include "stage/takes/resimulation.h"

#include "core/contract/core_tools.h"
#include "stage/host/core_code.h"
#include "stage/host/session.h"
#include "stage/scene/curve_copy.h"
#include "unidevice/sdk/binding_words.h"

#include <chrono>
#include <utility>

namespace Stage {

namespace {

/// Changes the mappings of some properties for as long as the object lives.
class MappingsForNow {
public:
    explicit MappingsForNow(MVR::CoreTools& tree) : tree_(tree) {}
    MappingsForNow(const MappingsForNow&) = delete;
    MappingsForNow& operator=(const MappingsForNow&) = delete;
    ~MappingsForNow() {
        // Last first: a property that two settings changed gets its original mapping back.
        for (auto old = old_.rbegin(); old != old_.rend(); ++old)
            (void)tree_.setMapping(old->first, old->second); // the tool may be gone by now
    }

    /// Returns the core's code.
    std::int32_t change(const ToolProperty& place, const Setting& setting) {
        namespace Word = UniDevice::BindingWord;
        const MVR::Tag bindings = tree_.getBindings(place.tool);
        for (std::int32_t i = 0; i < bindings.childCount(); ++i)
            if (bindings.child(i).attribute(Word::kName) == place.property)
                old_.emplace_back(place.tool, bindings.child(i));
        return tree_.setMapping(place.tool, toMapping(setting, place.property));
    }

private:
    MVR::CoreTools& tree_;
    std::vector<std::pair<std::string, MVR::Tag>> old_; // tool, and an element "property"
};

} // namespace

std::optional<ResimulationRun> resimulate(Session& session, double start, double end,
                                          const std::vector<Setting>& settings, std::string& error,
                                          const std::function<bool()>& isToStop,
                                          const std::function<void()>& atEnd) {
    MappingsForNow mappings(session.getTree());
    for (const Setting& setting : settings) {
        for (const ToolProperty& place : session.findProperties(setting)) {
            if (const std::int32_t code = mappings.change(place, setting); code != 0) {
                error = "the core can't change " + setting.toText() + ": " + describeCode(code);
                return std::nullopt;
            }
        }
    }
    ResimulationRun run;
    run.isOffGrid = !session.timeline.isFrame(start);
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
    if (code != 0) {
        error = "the core can't simulate: " + describeCode(code);
        return std::nullopt;
    }
    if (atEnd)
        atEnd();
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
