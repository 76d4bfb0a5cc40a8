// Snapshots that give themselves back at the end of their scope:
//
//     if (const MVR::ScopedTransform transform{getInterface(), node, time}) {
//         transform->setPosition(position);
//     }
#pragma once

#include "plugins/contract/c_interface.h"
#include "plugins/contract/snapshots.h"

namespace MVR {

/// How a kind of snapshot is got and given back.
template <class Snapshot>
struct SnapshotKind;

template <>
struct SnapshotKind<TransformSnapshot> {
    static TransformSnapshot* get(CInterface& tool, SceneNode* node, double time) {
        return tool.getSnapshot(node, time);
    }
    static void giveBack(CInterface& tool, SceneNode* node, TransformSnapshot&) {
        tool.nodeQuery5(node);
    }
};

template <>
struct SnapshotKind<MeshSnapshot> {
    static MeshSnapshot* get(CInterface& tool, SceneNode* node, double time) {
        return tool.getMeshSnapshot(node, time);
    }
    static void giveBack(CInterface& tool, SceneNode* node, MeshSnapshot&) {
        tool.nodeQuery3(node);
    }
};

template <>
struct SnapshotKind<HelperSnapshot> {
    static HelperSnapshot* get(CInterface& tool, SceneNode* node) {
        return tool.getHelperSnapshot(node);
    }
    static void giveBack(CInterface& tool, SceneNode* node, HelperSnapshot&) {
        tool.nodeQuery4(node);
    }
};

template <>
struct SnapshotKind<LensSnapshot> {
    static LensSnapshot* get(CInterface& tool, SceneNode* node, double time) {
        return LensSnapshot::fromHandle(tool.getLensSnapshot(node, time));
    }
    static void giveBack(CInterface&, SceneNode*, LensSnapshot& snapshot) { snapshot.release(); }
};

/// A snapshot from its construction to the end of its scope. Make one whenever
/// CInterface::getSnapshot() and its like may be called, and let it end before the next of its kind
/// on that node, and before the node.
template <class Snapshot>
class ScopedSnapshot {
public:
    /// `time` is one number, seconds of scene time; a ScopedHelper has none.
    template <class... Time>
    ScopedSnapshot(CInterface* tool, SceneNode* node, Time... time)
        : tool_(tool), node_(node), snapshot_(SnapshotKind<Snapshot>::get(*tool, node, time...)) {}
    ScopedSnapshot(const ScopedSnapshot&) = delete;
    ScopedSnapshot& operator=(const ScopedSnapshot&) = delete;
    ~ScopedSnapshot() {
        if (snapshot_ != nullptr)
            SnapshotKind<Snapshot>::giveBack(*tool_, node_, *snapshot_);
    }

    /// Returns false if the host has no such snapshot of the node.
    [[nodiscard]] explicit operator bool() const { return snapshot_ != nullptr; }
    /// Call it only if there is one.
    Snapshot* operator->() const { return snapshot_; }

private:
    CInterface* tool_;
    SceneNode* node_;
    Snapshot* snapshot_;
};

using ScopedTransform = ScopedSnapshot<TransformSnapshot>;
using ScopedMesh = ScopedSnapshot<MeshSnapshot>;
using ScopedHelper = ScopedSnapshot<HelperSnapshot>;
using ScopedLens = ScopedSnapshot<LensSnapshot>;

} // namespace MVR
