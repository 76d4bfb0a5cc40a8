#include "support/test_adaptor.h"

#include <iterator>
#include <sstream>

namespace MVR::Testing {

namespace {

std::string text(double number) {
    std::ostringstream stream;
    stream << number;
    return stream.str();
}

} // namespace

RecordingAdaptor::~RecordingAdaptor() {
    clearUndo();
}

std::vector<std::string> RecordingAdaptor::undoNames() const {
    std::vector<std::string> names;
    for (const Step& step : steps_)
        names.push_back(step.name);
    return names;
}

bool RecordingAdaptor::redo() {
    if (undone_.empty())
        return false;
    steps_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    for (const auto& object : steps_.back().objects)
        object->redo();
    return true;
}

void RecordingAdaptor::clearUndo() {
    while (!undone_.empty())
        undone_.pop_back();
    while (!steps_.empty())
        steps_.pop_back();
}

TestNode& RecordingAdaptor::makeNode(const std::string& nodeName, TestNode* parent,
                                     CInterface* tool) {
    nodes.push_back(std::make_unique<TestNode>(nodeName, tool));
    nodes.back()->setParent(parent);
    return *nodes.back();
}

TestNode* RecordingAdaptor::findNode(const std::string& nodeName) const {
    for (const auto& node : nodes)
        if (!node->destroyed && node->getName() == nodeName)
            return node.get();
    return nullptr;
}

SceneNode* RecordingAdaptor::createNode(CInterface* tool, std::string nodeName, std::intptr_t kind,
                                        std::intptr_t parent) {
    return createNode(tool, nodeName, kind, 0, parent);
}

SceneNode* RecordingAdaptor::createNode(CInterface* tool, std::string nodeName, std::intptr_t kind,
                                        std::intptr_t mesh, std::intptr_t parent) {
    if (SceneNode* const existing = createNode(tool, nodeName))
        return existing;
    if (nodeName == unmakableNode)
        return nullptr;
    note("createNode " + nodeName + " " + std::to_string(kind));
    nodes.push_back(std::make_unique<TestNode>(nodeName, tool));
    nodes.back()->setParent(reinterpret_cast<SceneNode*>(parent));
    if (const auto* const given = reinterpret_cast<const CMesh*>(mesh);
        given != nullptr && !given->vertices.empty())
        nodes.back()->set(*given);
    return nodes.back().get();
}

SceneNode* RecordingAdaptor::createNode(CInterface* tool, std::string nodeName) {
    for (SceneNode* node : getNodes(tool))
        if (node != nullptr && node->getName() == nodeName)
            return node;
    for (const auto& node : nodes) {
        if (node->claim != tool || node->getName() != nodeName || node->getOwner() != nullptr)
            continue;
        node->setOwner(tool);
        return node.get();
    }
    return nullptr;
}

std::vector<SceneNode*> RecordingAdaptor::getNodes(CInterface* tool) {
    std::vector<SceneNode*> found;
    if (onNodes)
        onNodes();
    if (listsNull)
        found.push_back(nullptr);
    for (const auto& node : nodes)
        if (node->getOwner() == tool)
            found.push_back(node.get());
    return found;
}

std::vector<SceneNode*> RecordingAdaptor::resolveNodes(Tag nodeInfo, std::string toolName,
                                                       CInterface* tool) {
    note("resolveNodes " + toolName);
    std::vector<SceneNode*> found;
    for (std::int32_t i = 0; i < nodeInfo.childCount("node"); ++i) {
        const std::string nodeName = nodeInfo.child("node", i).attribute("name");
        found.push_back(nullptr);
        for (const auto& node : nodes) {
            if (node->destroyed || node->getOwner() != nullptr || node->lastTool != toolName ||
                node->getName() != nodeName)
                continue;
            node->claim = tool;
            ++node->resolved;
            found.back() = node.get();
            break;
        }
    }
    return found;
}

std::vector<SceneNode*> RecordingAdaptor::mergeFile(std::string path) {
    note("mergeFile " + path);
    std::vector<SceneNode*> merged;
    for (TestNode* node : onMerge ? onMerge(path) : std::vector<TestNode*>()) {
        ++node->resolved;
        merged.push_back(node);
    }
    return merged;
}

void RecordingAdaptor::beginUndo(std::string stepName) {
    note("beginUndo " + stepName);
    if (open_.empty()) {
        undone_.clear();
        steps_.push_back({std::move(stepName), {}});
    }
    open_.push_back(steps_.back().objects.size());
}

void RecordingAdaptor::addUndo(CUndo* object) {
    note("addUndo");
    Util::Owned<CUndo> owned(object);
    if (!open_.empty())
        steps_.back().objects.push_back(std::move(owned));
}

void RecordingAdaptor::endUndo() {
    note("endUndo");
    if (!open_.empty())
        open_.pop_back();
}

void RecordingAdaptor::cancelUndo() {
    note("cancelUndo");
    if (open_.empty())
        return;
    auto& objects = steps_.back().objects;
    const auto first = objects.begin() + static_cast<std::ptrdiff_t>(open_.back());
    std::vector<Util::Owned<CUndo>> dropped(std::make_move_iterator(first),
                                            std::make_move_iterator(objects.end()));
    objects.erase(first, objects.end());
    open_.pop_back();
    if (open_.empty())
        steps_.pop_back();
    for (auto object = dropped.rbegin(); object != dropped.rend(); ++object)
        (*object)->restore(true);
}

bool RecordingAdaptor::undo() {
    note("undo");
    if (steps_.empty() || isUndoOpen())
        return false;
    undone_.push_back(std::move(steps_.back()));
    steps_.pop_back();
    auto& objects = undone_.back().objects;
    for (auto object = objects.rbegin(); object != objects.rend(); ++object)
        (*object)->restore(true);
    return true;
}

void RecordingAdaptor::setTime(double newTime) {
    note("setTime " + text(newTime));
    time = newTime;
}

void RecordingAdaptor::setRange(double start, double end) {
    note("setRange " + text(start) + " " + text(end));
    rangeStart = start;
    rangeEnd = end;
}

} // namespace MVR::Testing
