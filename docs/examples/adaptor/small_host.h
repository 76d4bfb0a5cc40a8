// The smallest host that can record a take: a flat scene, an undo list, a timeline.
#pragma once

#include "core/contract/adaptor_interface.h"
#include "core/util/sdk/dynamic_object.h"
#include "plugins/contract/c_undo.h"
#include "small_node.h"

#include <memory>
#include <string>
#include <vector>

class SmallHost final : public MVR::AdaptorInterface {
public:
    SmallHost() = default;
    SmallHost(const SmallHost&) = delete;
    SmallHost& operator=(const SmallHost&) = delete;

    bool isRecording() const { return recording_; }
    // Returns the first object of the scene, or null.
    const SmallNode* firstNode() const { return nodes_.empty() ? nullptr : nodes_.front().get(); }
    bool redo();

    std::int32_t getVersion() override { return MVR::kCoreVersion; }
    void setErrorCode(MVR::ErrorCode* table) override;
    void releaseErrorCode() override;
    void setLog(MVR::Log* log) override;
    void releaseLog() override;
    std::string getName() override { return "SmallHost"; }
    std::intptr_t getHostWindow() override { return 0; }

    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name, std::intptr_t kind,
                               std::intptr_t parent) override;
    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name, std::intptr_t kind,
                               std::intptr_t mesh, std::intptr_t parent) override;
    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name) override;
    std::vector<MVR::SceneNode*> getNodes(MVR::CInterface* tool) override;
    std::vector<MVR::SceneNode*> resolveNodes(MVR::Tag nodeInfo, std::string name,
                                              MVR::CInterface* tool) override;
    std::vector<MVR::SceneNode*> mergeFile(std::string) override { return {}; }

    void beginUndo(std::string name) override;
    void addUndo(MVR::CUndo* object) override;
    void endUndo() override;
    void cancelUndo() override;
    bool isUndoOpen() override { return !openSteps_.empty(); }
    bool undo() override;

    double getTime() override { return time_; }
    void setTime(double time) override { time_ = time; }
    void getRange(double* start, double* end) override;
    void setRange(double start, double end) override;
    double getFrameRate() override { return 25.0; }
    double getFrameStep() override { return 1.0 / 25.0; }
    void redraw() override {}
    void beginKeyboardCapture() override {}
    void endKeyboardCapture() override {}
    void recordingStarted(const std::vector<MVR::CInterface*>&) override { recording_ = true; }
    void recordingFinished() override { recording_ = false; }
    void detachNotify() override;
    MVR::Tag getSettingsLayout() override { return {}; }

private:
    // Objects of the core and its tools free themselves, in the library that created them.
    using UndoStep = std::vector<MVR::Util::Owned<MVR::CUndo>>;

    std::vector<std::unique_ptr<SmallNode>> nodes_;
    std::vector<UndoStep> openSteps_; // outermost first
    std::vector<UndoStep> undoable_;  // oldest first
    std::vector<UndoStep> redoable_;
    double time_ = 0.0;
    double start_ = 0.0;
    double end_ = 10.0;
    bool recording_ = false;
};
