#include "small_host.h"

#include "core/base/sdk/error_code.h"
#include "core/base/sdk/log.h"
#include "plugins/contract/tool_identity.h"

#include <iterator>
#include <utility>

namespace {

void takeBack(std::vector<MVR::Util::Owned<MVR::CUndo>>& step) {
    for (auto object = step.rbegin(); object != step.rend(); ++object)
        (*object)->restore(true);
}

} // namespace

// Because of these four, MVR::Log and MVR::ErrorCode work in the host as they do in the core.
void SmallHost::setErrorCode(MVR::ErrorCode* table) {
    MVR::ErrorCode::adopt(table);
}

void SmallHost::releaseErrorCode() {
    MVR::ErrorCode::adopt(nullptr);
}

void SmallHost::setLog(MVR::Log* log) {
    MVR::Log::adopt(log);
}

void SmallHost::releaseLog() {
    MVR::Log::adopt(nullptr);
}

MVR::SceneNode* SmallHost::createNode(MVR::CInterface* tool, std::string name, std::intptr_t,
                                      std::intptr_t) {
    if (MVR::SceneNode* const present = createNode(tool, name))
        return present;
    nodes_.push_back(std::make_unique<SmallNode>(*this, name, tool));
    // Its name shows which tool it belongs to, unless the tool has a better one.
    nodes_.back()->setName(MVR::getToolIdentity(*tool).name + " " + name);
    return nodes_.back().get();
}

MVR::SceneNode* SmallHost::createNode(MVR::CInterface* tool, std::string name, std::intptr_t kind,
                                      std::intptr_t, std::intptr_t parent) {
    return createNode(tool, std::move(name), kind, parent);
}

MVR::SceneNode* SmallHost::createNode(MVR::CInterface* tool, std::string name) {
    for (const auto& node : nodes_)
        if (node->getOwner() == tool && node->getName() == name)
            return node.get();
    return nullptr;
}

std::vector<MVR::SceneNode*> SmallHost::getNodes(MVR::CInterface* tool) {
    std::vector<MVR::SceneNode*> found;
    for (const auto& node : nodes_)
        if (node->getOwner() == tool)
            found.push_back(node.get());
    return found;
}

// One entry for each node that the saved tool had. This host saves no scenes, so all are gone.
std::vector<MVR::SceneNode*> SmallHost::resolveNodes(MVR::Tag nodeInfo, std::string,
                                                     MVR::CInterface*) {
    return std::vector<MVR::SceneNode*>(nodeInfo.childCount("node"), nullptr);
}

void SmallHost::beginUndo(std::string) {
    openSteps_.emplace_back();
}

void SmallHost::addUndo(MVR::CUndo* object) {
    MVR::Util::Owned<MVR::CUndo> owned(object);
    if (isUndoOpen())
        openSteps_.back().push_back(std::move(owned));
}

void SmallHost::endUndo() {
    if (openSteps_.empty())
        return;
    UndoStep step = std::move(openSteps_.back());
    openSteps_.pop_back();
    if (step.empty())
        return;
    if (openSteps_.empty()) {
        undoable_.push_back(std::move(step));
        redoable_.clear();
    } else { // an inner step becomes part of the outer one
        std::move(step.begin(), step.end(), std::back_inserter(openSteps_.back()));
    }
}

void SmallHost::cancelUndo() {
    if (!openSteps_.empty()) {
        takeBack(openSteps_.back());
        openSteps_.pop_back();
    }
}

bool SmallHost::undo() {
    if (undoable_.empty())
        return false;
    takeBack(undoable_.back());
    redoable_.push_back(std::move(undoable_.back()));
    undoable_.pop_back();
    return true;
}

bool SmallHost::redo() {
    if (redoable_.empty())
        return false;
    for (const auto& object : redoable_.back())
        object->redo();
    undoable_.push_back(std::move(redoable_.back()));
    redoable_.pop_back();
    return true;
}

void SmallHost::getRange(double* start, double* end) {
    *start = start_;
    *end = end_;
}

void SmallHost::setRange(double start, double end) {
    start_ = start;
    end_ = end;
}

// The core or its tools made what is on the undo list, and it must not outlive the attachment.
void SmallHost::detachNotify() {
    openSteps_.clear();
    undoable_.clear();
    redoable_.clear();
}
