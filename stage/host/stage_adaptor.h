#pragma once

#include "core/contract/adaptor_interface.h"
#include "core/contract/core_faults.h"

#include <string>
#include <utility>
#include <vector>

namespace Stage {

class Scene;
class StageNode;
class Timeline;
class UndoList;

/// The stage as the core sees it: passes calls on to scene, undo list and timeline.
class StageAdaptor final : public MVR::AdaptorInterface {
public:
    StageAdaptor(Scene& scene, UndoList& undo, Timeline& timeline)
        : scene_(scene), undo_(undo), timeline_(timeline) {}
    StageAdaptor(const StageAdaptor&) = delete;
    StageAdaptor& operator=(const StageAdaptor&) = delete;

    std::int32_t getVersion() override { return MVR::kCoreVersion; }
    void setErrorCode(MVR::ErrorCode* table) override;
    void releaseErrorCode() override;
    void setLog(MVR::Log* log) override;
    void releaseLog() override;
    std::string getName() override { return "Stage"; }
    std::intptr_t getHostWindow() override { return 0; }

    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name, std::intptr_t kind,
                               std::intptr_t parent) override;
    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name, std::intptr_t kind,
                               std::intptr_t mesh, std::intptr_t parent) override;
    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name) override;
    std::vector<MVR::SceneNode*> getNodes(MVR::CInterface* tool) override;
    std::vector<MVR::SceneNode*> resolveNodes(MVR::Tag nodeInfo, std::string name,
                                              MVR::CInterface* tool) override;
    std::vector<MVR::SceneNode*> mergeFile(std::string path) override;

    void beginUndo(std::string name) override;
    void addUndo(MVR::CUndo* object) override;
    void endUndo() override;
    void cancelUndo() override;
    bool isUndoOpen() override;
    bool undo() override;

    double getTime() override;
    void setTime(double time) override;
    void getRange(double* start, double* end) override;
    void setRange(double start, double end) override;
    double getFrameRate() override;
    double getFrameStep() override;
    void redraw() override {}
    void beginKeyboardCapture() override {}
    void endKeyboardCapture() override {}
    void recordingStarted(const std::vector<MVR::CInterface*>& tools) override;
    void recordingFinished() override;
    void detachNotify() override {}
    MVR::Tag getSettingsLayout() override { return {}; }

    /// Prints the core's log on the error stream when the core releases it.
    void printLogAtEnd() { isLogPrinted_ = true; }

    /// Sets where merging reports why a file can't be merged; null while there is no core.
    void setFaults(MVR::CoreFaults* faults) { faults_ = faults; }

private:
    StageNode* findSaved(const std::string& tool, const std::string& node) const;

    Scene& scene_;
    UndoList& undo_;
    Timeline& timeline_;
    MVR::CoreFaults* faults_ = nullptr; // not owned
    bool isLogPrinted_ = false;
};

} // namespace Stage
