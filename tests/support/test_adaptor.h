#pragma once

#include "core/contract/adaptor_interface.h"
#include "core/util/sdk/dynamic_object.h"
#include "plugins/contract/c_undo.h"
#include "support/test_node.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace MVR::Testing {

/// A host without a scene of its own. It notes each call as a line of text, keeps an undo list, and
/// shows the state that the test sets. Reading that state adds no line.
class RecordingAdaptor final : public AdaptorInterface {
public:
    ~RecordingAdaptor();

    std::vector<std::string> calls;
    std::vector<std::unique_ptr<TestNode>> nodes; ///< all ever created, even if destroyed since
    std::int32_t version = kCoreVersion;
    std::string name = "Stage";
    double time = 0;
    double rangeStart = 0;
    double rangeEnd = 4;
    double frameRate = 25;
    Tag settingsLayout;
    bool listsNull = false;        ///< getNodes() begins with a null
    std::function<void()> onNodes; ///< what the host does in getNodes()
    std::string unmakableNode;     ///< the name of nodes that createNode() refuses
    std::function<std::vector<TestNode*>(const std::string& path)> onMerge; ///< the file's nodes
    std::function<void(const std::string& call)> onCall; ///< what the host does in its own calls

    /// Returns the names of the closed steps that can be undone, oldest first.
    std::vector<std::string> undoNames() const;
    /// Repeats the last undone step. Returns true if there was one.
    bool redo();
    /// Drops all steps, as a host does before it detaches.
    void clearUndo();
    /// Creates a scene object, of a tool or of nobody.
    TestNode& makeNode(const std::string& nodeName, TestNode* parent, CInterface* tool = nullptr);
    TestNode* findNode(const std::string& nodeName) const;

    std::int32_t getVersion() override {
        note("getVersion");
        return version;
    }
    void setErrorCode(ErrorCode* table) override { note(table ? "setErrorCode" : "no table"); }
    void releaseErrorCode() override { note("releaseErrorCode"); }
    void setLog(Log* log) override { note(log ? "setLog" : "no log"); }
    void releaseLog() override { note("releaseLog"); }
    std::string getName() override { return name; }
    std::intptr_t getHostWindow() override {
        note("getHostWindow");
        return 0;
    }
    SceneNode* createNode(CInterface* tool, std::string nodeName, std::intptr_t kind,
                          std::intptr_t parent) override;
    SceneNode* createNode(CInterface* tool, std::string nodeName, std::intptr_t kind,
                          std::intptr_t mesh, std::intptr_t parent) override;
    SceneNode* createNode(CInterface* tool, std::string nodeName) override;
    std::vector<SceneNode*> getNodes(CInterface* tool) override;
    std::vector<SceneNode*> resolveNodes(Tag nodeInfo, std::string toolName,
                                         CInterface* tool) override;
    std::vector<SceneNode*> mergeFile(std::string path) override;
    void beginUndo(std::string stepName) override;
    void addUndo(CUndo* object) override;
    void endUndo() override;
    void cancelUndo() override;
    bool isUndoOpen() override { return !open_.empty(); }
    bool undo() override;
    double getTime() override { return time; }
    void setTime(double newTime) override;
    void getRange(double* start, double* end) override {
        *start = rangeStart;
        *end = rangeEnd;
    }
    void setRange(double start, double end) override;
    double getFrameRate() override { return frameRate; }
    double getFrameStep() override { return 1 / frameRate; }
    void redraw() override { note("redraw"); }
    void beginKeyboardCapture() override { note("beginKeyboardCapture"); }
    void endKeyboardCapture() override { note("endKeyboardCapture"); }
    void recordingStarted(const std::vector<CInterface*>& tools) override {
        note("recordingStarted " + std::to_string(tools.size()));
    }
    void recordingFinished() override { note("recordingFinished"); }
    void detachNotify() override { note("detachNotify"); }
    Tag getSettingsLayout() override { return settingsLayout; }

private:
    struct Step {
        std::string name;
        std::vector<Util::Owned<CUndo>> objects;
    };

    void note(const std::string& line) {
        calls.push_back(line);
        if (onCall)
            onCall(line);
    }

    std::vector<Step> undone_;
    std::vector<Step> steps_;       // the last is the open one, if one is
    std::vector<std::size_t> open_; // for each nested step: the objects before it in the last
};

} // namespace MVR::Testing
