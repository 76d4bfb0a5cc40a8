#include "plugins/model/elements/node_transform.h"

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/contract/snapshots.h"
#include "plugins/contract/transform_matrix.h"
#include "plugins/model/model_place.h"

#include <utility>

namespace MVR {
namespace {

constexpr const char* kReference = "reference";
constexpr const char* kGlobal = "global";

} // namespace

void NodeTransformElement::save(const NodeSaving& saved, Tag& out) {
    CInterface& tool = saved.tool.instance;
    TransformSnapshot* const snapshot = tool.getSnapshot(&saved.node, tool.getTime());
    if (snapshot == nullptr)
        return;
    Matrix matrix;
    snapshot->getGlobal(matrix.data());
    tool.nodeQuery5(&saved.node);
    Tag transform = writeMatrix(matrix);
    transform.attributeRef(kReference) = kGlobal;
    out.addChild(std::move(transform));
}

void NodeTransformElement::load(NodeLoading& loaded, const Tag& data) {
    const Tag& transform = data.child(kWord);
    if (transform.childCount() == 0)
        return;
    Log entry("Setting transform", Log::Notice);
    const bool isGlobal = transform.attribute(kReference) == kGlobal;
    if (isGlobal)
        entry.write("global reference");
    Matrix matrix;
    const bool isWhole = readMatrix(transform, matrix);
    if (!isWhole || !isFinite(matrix))
        loaded.tool.place.log("transform of node " + loaded.node.getName(),
                              "it can't be read whole");
    if (!isFinite(matrix))
        return;
    CInterface& tool = loaded.tool.instance;
    TransformSnapshot* const snapshot = tool.getSnapshot(&loaded.node, tool.getTime());
    if (snapshot == nullptr)
        return;
    if (isGlobal)
        snapshot->setGlobal(matrix.data());
    else
        snapshot->set(matrix.data());
    tool.nodeQuery5(&loaded.node);
}

} // namespace MVR
