#include "plugins/model/node_attributes.h"

#include "core/base/sdk/log.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/transform_matrix.h"

#include <vector>

namespace MVR {
namespace {

/// True if `node` is `wanted` or hangs below it at any depth.
bool isAtOrBelow(SceneNode& node, SceneNode& wanted) {
    std::vector<SceneNode*> way{&node}; // each the giver of the next, which is a handle
    bool isFound = false;
    while (way.back() != nullptr && !isFound) {
        isFound = way.back()->isSameNode(&wanted);
        way.push_back(isFound ? nullptr : way.back()->getParent());
    }
    for (way.pop_back(); way.size() > 1; way.pop_back())
        way[way.size() - 2]->release(way.back());
    return isFound;
}

} // namespace

Tag NodeAttributes::saveTransform() {
    TransformSnapshot* const snapshot = tool_.getSnapshot(&node_, tool_.getTime());
    if (snapshot == nullptr)
        return {};
    Matrix matrix;
    snapshot->getGlobal(matrix.data());
    tool_.nodeQuery5(&node_);
    Tag transform = writeMatrix(matrix);
    transform.attributeRef("reference") = "global";
    return transform;
}

Tag NodeAttributes::saveMesh() {
    MeshSnapshot* const snapshot = tool_.getMeshSnapshot(&node_, tool_.getTime());
    if (snapshot == nullptr)
        return {};
    CMesh mesh;
    snapshot->get(mesh);
    tool_.nodeQuery3(&node_);
    return mesh.write(false);
}

Tag NodeAttributes::saveVisibility() {
    return Tag::element("visible", node_.isVisible() ? "true" : "false");
}

void NodeAttributes::applyVisibility(const Tag& visible) {
    if (visible.value() == "false")
        node_.hide();
    else if (visible.value() == "true")
        node_.show();
}

void NodeAttributes::applyTransform(const Tag& transform, const ModelPlace& place) {
    if (transform.childCount() == 0)
        return;
    Log entry("Setting transform", Log::Notice);
    const bool isGlobal = transform.attribute("reference") == "global";
    if (isGlobal)
        entry.write("global reference");
    Matrix matrix;
    const bool isWhole = readMatrix(transform, matrix);
    if (!isWhole || !isFinite(matrix))
        place.log("transform of node " + node_.getName(), "it can't be read whole");
    if (!isFinite(matrix))
        return;
    TransformSnapshot* const snapshot = tool_.getSnapshot(&node_, tool_.getTime());
    if (snapshot == nullptr)
        return;
    if (isGlobal)
        snapshot->setGlobal(matrix.data());
    else
        snapshot->set(matrix.data());
    tool_.nodeQuery5(&node_);
}

void NodeAttributes::applyMesh(const Tag& mesh, const ModelPlace& place) {
    Log entry("Setting mesh", Log::Notice);
    if (mesh.isEmpty())
        return;
    entry.write("has mesh information");
    const CMesh read(mesh);
    entry.write("mesh loaded from structure");
    const bool isNothing = read.vertices.empty() && read.textureCoordinates.empty() &&
                           read.faces.empty() && read.textureFaces.empty();
    if (isNothing && mesh != CMesh().write(false) && mesh != CMesh().write(true))
        return place.log("mesh of node " + node_.getName(), "it can't be read");
    HelperSnapshot* const helper = tool_.getHelperSnapshot(&node_);
    if (helper == nullptr)
        return entry.write("unable to acquire helper");
    entry.write("got helper snapshot. Setting mesh");
    helper->set(read);
    entry.write("releasing snapshot");
    tool_.nodeQuery4(&node_);
}

bool NodeAttributes::hangBelow(SceneNode& parent) {
    // Nothing hangs below a node without children, which most are when they get their parent.
    if (node_.isSameNode(&parent) || (node_.getChildCount() > 0 && isAtOrBelow(parent, node_)))
        return false;
    node_.setParent(&parent);
    return true;
}

} // namespace MVR
