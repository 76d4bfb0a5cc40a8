#include "plugins/instance_reference.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/model/model_paths.h"
#include "plugins/model/model_place.h"

#include <algorithm>
#include <vector>

namespace MVR {
namespace {

void setVisible(SceneNode& node, bool visible) {
    if (VisibilityController* const controller = node.getVisibilityController(0.0))
        node.setVisibilityController(controller);
    else if (visible)
        node.show();
    else
        node.hide();
}

/// What hangs below `top`, at any depth; objects that a tool owns stay as they are, with all below.
void setVisibleBelow(SceneNode& top, bool visible) {
    struct Level {
        SceneNode* node;
        std::int32_t nextChild;
    };
    std::vector<Level> open{{&top, 0}}; // each but the first is a handle of the one before
    while (true) {
        Level& level = open.back();
        SceneNode* const node = level.node;
        if (level.nextChild < node->getChildCount()) {
            SceneNode* const child = node->getChild(level.nextChild++);
            if (child == nullptr)
                continue;
            if (child->getOwner() != nullptr) {
                node->release(child);
                continue;
            }
            setVisible(*child, visible);
            open.push_back({child, 0});
            continue;
        }
        open.pop_back();
        if (open.empty())
            return;
        open.back().node->release(node);
    }
}

/// Hides a merged node; what is a root takes the transform, and the rest goes with it.
void treatMergedNode(SceneNode& node, const Matrix& postMerge) {
    Log entry("Processing node: " + node.getName(), Log::Notice);
    node.hide();
    if (SceneNode* const parent = node.getParent()) {
        entry.write("This node has a parent");
        node.release(parent);
        return;
    }
    entry.write("This node is a root node. Performing postmerge process");
    TransformAccess* const access = node.getTransformAccess(0.0);
    if (access == nullptr)
        return;
    Matrix matrix;
    access->get(matrix.data());
    access->set(multiply(matrix, postMerge).data());
    node.releaseTransformAccess(access);
}

} // namespace

void InstanceReference::loadHighPoly(const Tag& highPoly, const std::string& path,
                                     const ModelPlace& place) {
    Log entry("Loading highpoly model", Log::Notice);
    highPolyTag_ = highPoly;
    for (std::int32_t i = 0; i < highPoly.childCount(); ++i) {
        const Tag& option = highPoly.child(i);
        if (!option.hasName("option"))
            continue;
        Log trial("Trying option..", Log::Notice);
        if (!isForThisHost(option))
            continue;
        Log process("processing compatible option", Log::Notice);
        if (!option.child("noload").isEmpty())
            return process.write("Found flag for not loading the highpoly. highpoly CANCELED");
        choosePostMerge(highPoly, option, place);
        const std::string& name = option.child("file").value();
        process.write("highpoly file path", path + "\\" + name, Log::OwnLevel);
        const std::string file = findModelFile(path, name);
        if (!file.empty())
            return mergeHighPoly(file, place);
        process.write("highpoly file not found");
        if (!name.empty())
            place.log("highpoly", "there is no file that it may use: " + name);
    }
}

bool InstanceReference::isForThisHost(const Tag& option) const {
    const std::string host = getServices()->getAdaptor()->getName();
    Log log(Log::Notice);
    bool isForThisHost = false;
    for (std::int32_t i = 0; i < option.childCount(); ++i) {
        const Tag& compatible = option.child(i);
        if (!compatible.hasName("compatible"))
            continue;
        log.write("Checking compatibility label", compatible.value(), Log::OwnLevel);
        if (compatible.value() != host)
            continue;
        log.write("MATCH");
        isForThisHost = true;
    }
    return isForThisHost;
}

void InstanceReference::choosePostMerge(const Tag& highPoly, const Tag& option,
                                        const ModelPlace& place) {
    Log log(Log::Notice);
    postMerge_ = kIdentityMatrix;
    const Tag& local = option.child("postmerge");
    const Tag& global = highPoly.child("postmerge");
    if (!local.isEmpty())
        log.write("Using local postmerge transform");
    else if (!global.isEmpty())
        log.write("Using global postmerge transform");
    else
        return log.write("No postmerge transform neccessary");
    const bool isWhole = readMatrix(local.isEmpty() ? global : local, postMerge_);
    if (!isWhole || !isFinite(postMerge_))
        place.log("postmerge", "it can't be read whole");
    if (!isFinite(postMerge_))
        postMerge_ = kIdentityMatrix;
}

void InstanceReference::mergeHighPoly(const std::string& file, const ModelPlace& place) {
    const std::vector<CoreFault>& faults = getServices()->getFaults().getFaults();
    const std::size_t faultsBefore = faults.size();
    place.listen("highpoly");
    highPolyNodes_ = getServices()->getAdaptor()->mergeFile(file);
    place.listen("");
    if (highPolyNodes_.empty() && faults.size() == faultsBefore) // the host didn't tell why
        place.log("highpoly", "the host can't merge " + file);
    highPolyNodes_.erase(std::remove(highPolyNodes_.begin(), highPolyNodes_.end(), nullptr),
                         highPolyNodes_.end());
    for (SceneNode* node : highPolyNodes_) {
        highPolyByName_.emplace(node->getName(), node);
        treatMergedNode(*node, postMerge_);
    }
}

SceneNode* InstanceReference::findHighPolyNode(const std::string& name) const {
    for (const InstanceReference* each = this; each != nullptr; each = each->getParentReference())
        if (const auto found = each->highPolyByName_.find(name);
            found != each->highPolyByName_.end())
            return found->second;
    return nullptr;
}

void InstanceReference::nameHighPolyNodes() {
    for (SceneNode* node : highPolyNodes_) {
        node->setName(instance_->getName() + "_" + node->getHostName());
        node->release(node);
    }
    highPolyNodes_.clear();
    highPolyByName_.clear();
}

void InstanceReference::setLowPolyVisible(bool visible) {
    walk(*this, [visible](TreeNode& each) {
        const auto& reference = static_cast<InstanceReference&>(each);
        if (CoreServices* const core = reference.getServices())
            for (SceneNode* node : core->getAdaptor()->getNodes(reference.instance_))
                setVisible(*node, visible);
        return false;
    });
}

void InstanceReference::setHighPolyVisible(bool visible) {
    walk(*this, [visible](TreeNode& each) {
        const auto& reference = static_cast<InstanceReference&>(each);
        if (CoreServices* const core = reference.getServices())
            for (SceneNode* node : core->getAdaptor()->getNodes(reference.instance_))
                setVisibleBelow(*node, visible);
        return false;
    });
}

} // namespace MVR
