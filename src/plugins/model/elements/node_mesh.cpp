#include "plugins/model/elements/node_mesh.h"

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/scene_node.h"
#include "plugins/contract/snapshots.h"
#include "plugins/model/model_place.h"

namespace MVR {

void NodeMeshElement::save(const NodeSaving& saved, Tag& out) {
    CInterface& tool = saved.tool.instance;
    MeshSnapshot* const snapshot = tool.getMeshSnapshot(&saved.node, tool.getTime());
    if (snapshot == nullptr)
        return;
    CMesh mesh;
    snapshot->get(mesh);
    tool.nodeQuery3(&saved.node);
    out.addChild(mesh.write(false));
}

void NodeMeshElement::load(NodeLoading& loaded, const Tag& data) {
    Log entry("Setting mesh", Log::Notice);
    const Tag& mesh = data.child(kWord);
    if (mesh.isEmpty())
        return;
    entry.write("has mesh information");
    const CMesh read(mesh);
    entry.write("mesh loaded from structure");
    const bool isNothing = read.vertices.empty() && read.textureCoordinates.empty() &&
                           read.faces.empty() && read.textureFaces.empty();
    if (isNothing && mesh != CMesh().write(false) && mesh != CMesh().write(true))
        return loaded.tool.place.log("mesh of node " + loaded.node.getName(), "it can't be read");
    CInterface& tool = loaded.tool.instance;
    HelperSnapshot* const helper = tool.getHelperSnapshot(&loaded.node);
    if (helper == nullptr)
        return entry.write("unable to acquire helper");
    entry.write("got helper snapshot. Setting mesh");
    helper->set(read);
    entry.write("releasing snapshot");
    tool.nodeQuery4(&loaded.node);
}

} // namespace MVR
