#include "core/guarded_adaptor.h"

#include "core/base/sdk/log.h"

#include <algorithm>

namespace MVR {

std::int32_t GuardedAdaptor::getVersion() {
    return ask(
        "getVersion", std::int32_t{0}, [this] { return host_.getVersion(); });
}

void GuardedAdaptor::setErrorCode(ErrorCode* table) {
    tell(
        "setErrorCode", [&] { host_.setErrorCode(table); });
}

void GuardedAdaptor::releaseErrorCode() {
    tell(
        "releaseErrorCode", [this] { host_.releaseErrorCode(); });
}

void GuardedAdaptor::setLog(Log* log) {
    tell(
        "setLog", [&] { host_.setLog(log); });
}

void GuardedAdaptor::releaseLog() {
    tell(
        "releaseLog", [this] { host_.releaseLog(); });
}

std::string GuardedAdaptor::getName() {
    return ask(
        "getName", std::string(), [this] { return host_.getName(); });
}

std::intptr_t GuardedAdaptor::getHostWindow() {
    return ask(
        "getHostWindow", std::intptr_t{0}, [this] { return host_.getHostWindow(); });
}

SceneNode* GuardedAdaptor::createNode(CInterface* tool, std::string name, std::intptr_t kind,
                                      std::intptr_t parent) {
    return ask(
        "createNode", static_cast<SceneNode*>(nullptr),
        [&] { return host_.createNode(tool, std::move(name), kind, parent); });
}

SceneNode* GuardedAdaptor::createNode(CInterface* tool, std::string name, std::intptr_t kind,
                                      std::intptr_t mesh, std::intptr_t parent) {
    return ask(
        "createNode", static_cast<SceneNode*>(nullptr),
        [&] { return host_.createNode(tool, std::move(name), kind, mesh, parent); });
}

SceneNode* GuardedAdaptor::createNode(CInterface* tool, std::string name) {
    return ask(
        "createNode", static_cast<SceneNode*>(nullptr),
        [&] { return host_.createNode(tool, std::move(name)); });
}

template <class Call>
std::vector<SceneNode*> GuardedAdaptor::askForNodes(const char* operation, const Call& call) {
    std::vector<SceneNode*> nodes = ask(operation, std::vector<SceneNode*>(), call);
    const auto present = std::remove(nodes.begin(), nodes.end(), nullptr);
    if (present != nodes.end()) {
        nodes.erase(present, nodes.end());
        Log(Log::Error).write(std::string("The adaptor returned a null node in ") + operation);
    }
    return nodes;
}

std::vector<SceneNode*> GuardedAdaptor::getNodes(CInterface* tool) {
    return askForNodes(
        "getNodes", [&] { return host_.getNodes(tool); });
}

std::vector<SceneNode*> GuardedAdaptor::resolveNodes(Tag nodeInfo, std::string name,
                                                     CInterface* tool) {
    return ask(
        "resolveNodes", std::vector<SceneNode*>(),
        [&] { return host_.resolveNodes(std::move(nodeInfo), std::move(name), tool); });
}

std::vector<SceneNode*> GuardedAdaptor::mergeFile(std::string path) {
    return askForNodes(
        "mergeFile", [&] { return host_.mergeFile(std::move(path)); });
}

void GuardedAdaptor::beginUndo(std::string name) {
    tell(
        "beginUndo", [&] { host_.beginUndo(std::move(name)); });
}

void GuardedAdaptor::addUndo(CUndo* object) {
    tell(
        "addUndo", [&] { host_.addUndo(object); });
}

void GuardedAdaptor::endUndo() {
    tell(
        "endUndo", [this] { host_.endUndo(); });
}

void GuardedAdaptor::cancelUndo() {
    tell(
        "cancelUndo", [this] { host_.cancelUndo(); });
}

bool GuardedAdaptor::isUndoOpen() {
    return ask(
        "isUndoOpen", false, [this] { return host_.isUndoOpen(); });
}

bool GuardedAdaptor::undo() {
    return ask(
        "undo", false, [this] { return host_.undo(); });
}

double GuardedAdaptor::getTime() {
    return time_ = ask(
               "getTime", time_, [this] { return host_.getTime(); });
}

void GuardedAdaptor::setTime(double time) {
    tell(
        "setTime", [&] { host_.setTime(time); });
}

void GuardedAdaptor::getRange(double* start, double* end) {
    tell("getRange", [this] { host_.getRange(&rangeStart_, &rangeEnd_); });
    *start = rangeStart_;
    *end = rangeEnd_;
}

void GuardedAdaptor::setRange(double start, double end) {
    tell(
        "setRange", [&] { host_.setRange(start, end); });
}

double GuardedAdaptor::getFrameRate() {
    return frameRate_ = ask(
               "getFrameRate", frameRate_, [this] { return host_.getFrameRate(); });
}

double GuardedAdaptor::getFrameStep() {
    return frameStep_ = ask(
               "getFrameStep", frameStep_, [this] { return host_.getFrameStep(); });
}

void GuardedAdaptor::redraw() {
    tell(
        "redraw", [this] { host_.redraw(); });
}

void GuardedAdaptor::beginKeyboardCapture() {
    tell(
        "beginKeyboardCapture", [this] { host_.beginKeyboardCapture(); });
}

void GuardedAdaptor::endKeyboardCapture() {
    tell(
        "endKeyboardCapture", [this] { host_.endKeyboardCapture(); });
}

void GuardedAdaptor::recordingStarted(const std::vector<CInterface*>& tools) {
    tell(
        "recordingStarted", [&] { host_.recordingStarted(tools); });
}

void GuardedAdaptor::recordingFinished() {
    tell(
        "recordingFinished", [this] { host_.recordingFinished(); });
}

void GuardedAdaptor::detachNotify() {
    tell(
        "detachNotify", [this] { host_.detachNotify(); });
}

Tag GuardedAdaptor::getSettingsLayout() {
    return ask(
        "getSettingsLayout", Tag(), [this] { return host_.getSettingsLayout(); });
}

} // namespace MVR
