#include "plugins/model/elements/high_poly.h"

#include "core/base/border.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_reference.h"
#include "plugins/model/model_paths.h"
#include "plugins/model/model_place.h"
#include "plugins/model_parts.h"

namespace MVR {
namespace {

/// Hides a merged node. A root gets the transform, and the rest moves with it.
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

bool isForHost(const Tag& option, const std::string& host) {
    Log log(Log::Notice);
    bool isForHost = false;
    for (std::int32_t i = 0; i < option.childCount(); ++i) {
        const Tag& compatible = option.child(i);
        if (!compatible.hasName("compatible"))
            continue;
        log.write("Checking compatibility label", compatible.value(), Log::OwnLevel);
        if (compatible.value() != host)
            continue;
        log.write("MATCH");
        isForHost = true;
    }
    return isForHost;
}

} // namespace

void HighPoly::save(const ToolSaving& tool, Tag& out) {
    out.addChild(tool.reference.getModelParts().read<HighPoly>().read_);
}

void HighPoly::load(ToolLoading& tool, const Tag& data) {
    tool.reference.loadHighPoly(data.child(kWord), tool.folder, tool.place);
}

void HighPoly::merge(CoreServices& services, const Tag& highPoly, const std::string& folder,
                     const ModelPlace& place) {
    read_ = highPoly;
    for (std::int32_t i = 0; i < highPoly.childCount(); ++i) {
        const Tag& option = highPoly.child(i);
        if (!option.hasName("option"))
            continue;
        Log trial("Trying option..", Log::Notice);
        if (!isForHost(option, services.getAdaptor()->getName()))
            continue;
        Log process("processing compatible option", Log::Notice);
        if (!option.child("noload").isEmpty())
            return process.write("Found flag for not loading the highpoly. highpoly CANCELED");
        choosePostMerge(highPoly, option, place);
        const std::string& name = option.child("file").value();
        process.write("highpoly file path", folder + "\\" + name, Log::OwnLevel);
        const std::string file = findModelFile(folder, name);
        if (!file.empty())
            return mergeFile(services, file, place);
        process.write("highpoly file not found");
        if (!name.empty())
            place.log(kWord, "there is no file that it may use: " + name);
    }
}

void HighPoly::choosePostMerge(const Tag& highPoly, const Tag& option, const ModelPlace& place) {
    constexpr const char* kTransform = "postmerge";
    Log log(Log::Notice);
    postMerge_ = kIdentityMatrix;
    const Tag& local = option.child(kTransform);
    const Tag& global = highPoly.child(kTransform);
    if (!local.isEmpty())
        log.write("Using local postmerge transform");
    else if (!global.isEmpty())
        log.write("Using global postmerge transform");
    else
        return log.write("No postmerge transform neccessary");
    const bool isWhole = readMatrix(local.isEmpty() ? global : local, postMerge_);
    if (!isWhole || !isFinite(postMerge_))
        place.log(kTransform, "it can't be read whole");
    if (!isFinite(postMerge_))
        postMerge_ = kIdentityMatrix;
}

void HighPoly::mergeFile(CoreServices& services, const std::string& file, const ModelPlace& place) {
    const std::vector<CoreFault>& faults = services.getFaults().getFaults();
    const std::size_t faultsBefore = faults.size();
    place.listen(kWord);
    nodes_ = services.getAdaptor()->mergeFile(file);
    place.listen("");
    if (nodes_.empty() && faults.size() == faultsBefore) // the host didn't tell why
        place.log(kWord, "the host can't merge " + file);
    for (SceneNode* node : nodes_) {
        byName_.emplace(node->getName(), node);
        (void)Border::callNode(kWord, [&] { treatMergedNode(*node, postMerge_); });
    }
}

SceneNode* HighPoly::find(const std::string& name) const {
    const auto found = byName_.find(name);
    return found != byName_.end() ? found->second : nullptr;
}

void HighPoly::nameNodes(const std::string& toolName) {
    for (SceneNode* node : nodes_)
        (void)Border::callNode("setName",
                               [&] { node->setName(toolName + "_" + node->getHostName()); });
    releaseNodes();
}

void HighPoly::releaseNodes() {
    for (SceneNode* node : nodes_)
        (void)Border::callNode("release", [node] { node->release(node); });
    nodes_.clear();
    byName_.clear();
}

} // namespace MVR
