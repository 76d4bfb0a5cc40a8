#include "stage/host/stage_adaptor.h"

#include "core/base/sdk/error_code.h"
#include "core/base/sdk/log.h"
#include "stage/import/merge.h"
#include "stage/scene/scene.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

#include <cstdio>
#include <utility>

namespace Stage {

void StageAdaptor::setErrorCode(MVR::ErrorCode* table) {
    MVR::ErrorCode::adopt(table);
}

void StageAdaptor::releaseErrorCode() {
    MVR::ErrorCode::adopt(nullptr);
}

void StageAdaptor::setLog(MVR::Log* log) {
    MVR::Log::adopt(log);
}

void StageAdaptor::releaseLog() {
    if (isLogPrinted_)
        std::fputs(MVR::Log::getText().c_str(), stderr);
    MVR::Log::adopt(nullptr);
}

MVR::SceneNode* StageAdaptor::createNode(MVR::CInterface* tool, std::string name,
                                         std::intptr_t kind, std::intptr_t parent) {
    if (StageNode* known = scene_.find(name, tool))
        return known;
    auto* wanted = reinterpret_cast<MVR::SceneNode*>(parent);
    StageNode* below = scene_.contains(wanted) ? static_cast<StageNode*>(wanted) : nullptr;
    return scene_.create(std::move(name), tool, kind, below);
}

MVR::SceneNode* StageAdaptor::createNode(MVR::CInterface* tool, std::string name,
                                         std::intptr_t kind, std::intptr_t mesh,
                                         std::intptr_t parent) {
    const bool isNew = scene_.find(name, tool) == nullptr;
    auto* node = static_cast<StageNode*>(createNode(tool, std::move(name), kind, parent));
    if (isNew && mesh != 0) {
        node->setMesh(
            std::make_shared<const MVR::CMesh>(*reinterpret_cast<const MVR::CMesh*>(mesh)));
    }
    return node;
}

MVR::SceneNode* StageAdaptor::createNode(MVR::CInterface* tool, std::string name) {
    return scene_.find(name, tool);
}

std::vector<MVR::SceneNode*> StageAdaptor::getNodes(MVR::CInterface* tool) {
    std::vector<MVR::SceneNode*> nodes;
    for (const auto& node : scene_.getNodes())
        if (node->getOwner() == tool)
            nodes.push_back(node.get());
    return nodes;
}

/// Returns the node of a tool that is gone: from a scene's file, which names the tool, or from this
/// run, where only the node's name is left, that of the tool or of the tool and the node.
StageNode* StageAdaptor::findSaved(const std::string& tool, const std::string& node) const {
    StageNode* byName = nullptr;
    for (const auto& free : scene_.getNodes()) {
        if (free->getOwner() != nullptr || free->getName() != node)
            continue;
        if (free->getSavedOwner() == tool)
            return free.get();
        const std::string& sceneName = free->getSceneName();
        if (free->getSavedOwner().empty() && byName == nullptr &&
            (sceneName == tool || sceneName == tool + "_" + node))
            byName = free.get();
    }
    return byName;
}

std::vector<MVR::SceneNode*> StageAdaptor::resolveNodes(MVR::Tag nodeInfo, std::string name,
                                                        MVR::CInterface* tool) {
    std::vector<MVR::SceneNode*> nodes;
    for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i) {
        if (!nodeInfo.child(i).hasName("node"))
            continue;
        const std::string nodeName = nodeInfo.child(i).attribute("name");
        StageNode* found = scene_.find(nodeName, tool);
        if (found == nullptr)
            found = findSaved(name, nodeName);
        if (found != nullptr)
            found->setOwner(tool);
        nodes.push_back(found != nullptr ? found->toHandle() : nullptr);
    }
    return nodes;
}

std::vector<MVR::SceneNode*> StageAdaptor::mergeFile(std::string path) {
    std::vector<MVR::SceneNode*> nodes;
    std::string error;
    for (StageNode* node : mergeInto(scene_, path, error))
        nodes.push_back(node);
    if (nodes.empty() && faults_ != nullptr)
        faults_->tell("Unable to merge " + error);
    return nodes;
}

void StageAdaptor::beginUndo(std::string name) {
    undo_.begin(std::move(name));
}

void StageAdaptor::addUndo(MVR::CUndo* object) {
    undo_.add(object);
}

void StageAdaptor::endUndo() {
    undo_.end();
}

void StageAdaptor::cancelUndo() {
    undo_.cancel();
}

bool StageAdaptor::isUndoOpen() {
    return undo_.isOpen();
}

bool StageAdaptor::undo() {
    return undo_.undo();
}

double StageAdaptor::getTime() {
    return timeline_.getTime();
}

void StageAdaptor::setTime(double time) {
    timeline_.setTime(time);
}

void StageAdaptor::getRange(double* start, double* end) {
    *start = timeline_.getStart();
    *end = timeline_.getEnd();
}

void StageAdaptor::setRange(double start, double end) {
    timeline_.setRange(start, end);
}

double StageAdaptor::getFrameRate() {
    return timeline_.getRate();
}

double StageAdaptor::getFrameStep() {
    return timeline_.getStep();
}

void StageAdaptor::recordingStarted(const std::vector<MVR::CInterface*>& tools) {
    (void)tools;
    scene_.setRecording(true);
}

void StageAdaptor::recordingFinished() {
    scene_.setRecording(false);
}

} // namespace Stage
