// The border to the host's adaptor.
#pragma once

#include "core/base/border.h"
#include "core/contract/adaptor_interface.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace MVR {

/// Hands each call on to the host's own adaptor. A call that throws answers nothing: null, an empty
/// list, or for a number what the adaptor answered last. Lists of nodes lose their nulls, but for
/// those of resolveNodes(), which mean something.
class GuardedAdaptor final : public AdaptorInterface {
public:
    /// `host` outlives this object.
    explicit GuardedAdaptor(AdaptorInterface& host) : host_(host) {}
    GuardedAdaptor(const GuardedAdaptor&) = delete;
    GuardedAdaptor& operator=(const GuardedAdaptor&) = delete;

    double getTime() override;
    double getFrameRate() override;
    double getFrameStep() override;
    void getRange(double* start, double* end) override;
    void setRange(double start, double end) override;
    void setTime(double time) override;

    std::int32_t getVersion() override;
    void setErrorCode(ErrorCode* table) override;
    void releaseErrorCode() override;
    void setLog(Log* log) override;
    void releaseLog() override;
    std::string getName() override;
    std::intptr_t getHostWindow() override;
    SceneNode* createNode(CInterface* tool, std::string name, std::intptr_t kind,
                          std::intptr_t parent) override;
    SceneNode* createNode(CInterface* tool, std::string name, std::intptr_t kind,
                          std::intptr_t mesh, std::intptr_t parent) override;
    SceneNode* createNode(CInterface* tool, std::string name) override;
    std::vector<SceneNode*> getNodes(CInterface* tool) override;
    std::vector<SceneNode*> resolveNodes(Tag nodeInfo, std::string name, CInterface* tool) override;
    std::vector<SceneNode*> mergeFile(std::string path) override;
    void beginUndo(std::string name) override;
    void addUndo(CUndo* object) override;
    void endUndo() override;
    void cancelUndo() override;
    bool isUndoOpen() override;
    bool undo() override;
    void redraw() override;
    void beginKeyboardCapture() override;
    void endKeyboardCapture() override;
    void recordingStarted(const std::vector<CInterface*>& tools) override;
    void recordingFinished() override;
    void detachNotify() override;
    Tag getSettingsLayout() override;

private:
    static std::string describe() { return "The adaptor"; }
    template <class Call>
    static void tell(const char* operation, const Call& call) {
        (void)Border::call(describe, operation, call);
    }
    template <class Answer, class Call>
    static Answer ask(const char* operation, Answer ifThrown, const Call& call) {
        return Border::ask(describe, operation, std::move(ifThrown), call);
    }
    template <class Call>
    static std::vector<SceneNode*> askForNodes(const char* operation, const Call& call);

    AdaptorInterface& host_;
    double time_ = 0.0;
    double rangeStart_ = 0.0;
    double rangeEnd_ = 0.0;
    double frameRate_ = 25.0;
    double frameStep_ = 0.04;
};

} // namespace MVR
