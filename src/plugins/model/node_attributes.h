/// \file
/// What models store of a scene node itself.
#pragma once

#include "data/sdk/tag.h"
#include "plugins/model/model_place.h"

namespace MVR {

class CInterface;
class SceneNode;

/// One node of `tool`, and the elements that hold its properties. What is damaged is logged; a mesh
/// or a transform that holds nothing usable leaves the node as it was.
class NodeAttributes {
public:
    NodeAttributes(CInterface& tool, SceneNode& node) : tool_(tool), node_(node) {}

    /// Where the node stands in the world at the host's time; empty if it has no place.
    [[nodiscard]] Tag saveTransform();
    /// The node's mesh; empty if it has none.
    [[nodiscard]] Tag saveMesh();
    [[nodiscard]] Tag saveVisibility();

    void applyVisibility(const Tag& visible);
    void applyTransform(const Tag& transform, const ModelPlace& place);
    void applyMesh(const Tag& mesh, const ModelPlace& place);
    /// Hangs the node below `parent`. False, with nothing changed, if that would close a circle.
    [[nodiscard]] bool hangBelow(SceneNode& parent);

private:
    CInterface& tool_;
    SceneNode& node_;
};

} // namespace MVR
