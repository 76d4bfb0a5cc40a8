// What a tool reads and animates of a scene node, and the conventions that all numbers of a scene
// keep, in snapshots, meshes, models and extensions alike:
//
// - Axes: right-handed, x to the right, y up, z towards the viewer. A camera looks along its own
//   -z, with its own y up. A host with other axes converts in its nodes; the core turns nothing.
// - Lengths are in scene units, which the core neither knows nor converts; focal lengths are in
//   millimetres.
// - A matrix is 16 doubles, row after row. A point is a row and is on the left, so that the
//   translation is row 3 (indices 12, 13, 14), and "first a, then b" is the product a b.
// - A quaternion is x, y, z, w. A positive angle turns from x to y about z: (0, 0, sin(a/2),
//   cos(a/2)). Angles that people read, in panels, properties and files, are in degrees.
// - Times are doubles, in seconds of scene time. The frames of a take are at multiples of the
//   host's frame step.
#pragma once

#include <cstdint>

namespace MVR {

class CMesh;

/// Access to the local matrix of a scene node at one time. The adaptor owns it. Its operations may
/// be called until it is given back.
class TransformAccess {
public:
    /// Reads the local matrix into `matrix`.
    virtual void get(double matrix[16]) = 0;
    /// Writes the local matrix.
    virtual void set(const double matrix[16]) = 0;

protected:
    ~TransformAccess() = default;
};

/// The transform of a scene node at one time: what a tool reads and animates.
///
/// 1. Get it with ScopedTransform (plugins/contract/scoped_snapshot.h), or with
///    CInterface::getSnapshot(node, time).
/// 2. Read and write as often as needed. While a recording or a resimulation runs, a write sets one
///    key at that time on each curve that it names; otherwise it changes the value at rest.
/// 3. Give it back with CInterface::nodeQuery5(node) before the next snapshot of that node and
///    before the tool returns; ScopedTransform does.
///
/// The adaptor owns the object; it is valid, and its operations may be called, until it is given
/// back.
class TransformSnapshot : public TransformAccess {
public:
    /// The matrix in world space.
    virtual void getGlobal(double matrix[16]) = 0;
    virtual void setGlobal(const double matrix[16]) = 0;
    /// The position below the node's parent: x, y, z.
    virtual void getPosition(double position[3]) = 0;
    virtual void setPosition(const double position[3]) = 0;
    /// The rotation below the node's parent: quaternion x, y, z, w. It is stored as given; the host
    /// normalises it where it evaluates it.
    virtual void getRotation(double quaternion[4]) = 0;
    virtual void setRotation(const double quaternion[4]) = 0;

protected:
    ~TransformSnapshot() = default;
};

/// The mesh of a scene node at one time, for reading. The adaptor owns it; it is valid until it is
/// given back, by ScopedMesh or with CInterface::nodeQuery3.
class MeshSnapshot {
public:
    /// Fills `mesh` with the node's mesh.
    virtual void get(CMesh& mesh) = 0;

protected:
    ~MeshSnapshot() = default;
};

/// A scene node as a helper object whose mesh can be replaced. The adaptor owns it; it is valid
/// until it is given back, by ScopedHelper or with CInterface::nodeQuery4.
class HelperSnapshot {
public:
    /// Gives the node a copy of `mesh`, as an act that the host's undo step undoes.
    virtual void set(const CMesh& mesh) = 0;

protected:
    ~HelperSnapshot() = default;
};

/// The lens of a camera at one time: what a tool reads and animates.
///
/// 1. Get it with ScopedLens (plugins/contract/scoped_snapshot.h), or with
///    `LensSnapshot::fromHandle(tool->getLensSnapshot(node, time))`. A node that isn't a camera has
///    none, nor has any node of a host that doesn't animate lenses.
/// 2. Read and write as often as needed. While a recording or a resimulation runs, a write sets one
///    key at that time on the curve that it names; otherwise it changes the value at rest. A value
///    that isn't above 0, or isn't finite, is ignored. A lens to which a take writes nothing gets
///    no key from it.
/// 3. Give it back with release() before the next lens snapshot of that node and before the tool
///    returns; ScopedLens does.
///
/// A tool gets one of the core's, which hands each call on to the adaptor's until it is given back;
/// after that it reads 0 and writes nothing. The adaptor owns its own, which is valid until then.
/// The host's picture size decides which field of view a focal length results in.
class LensSnapshot {
public:
    /// Millimetres.
    virtual double getFocalLengthMm() = 0;
    virtual void setFocalLengthMm(double millimetres) = 0;
    /// From the camera to the plane in focus, in scene units.
    virtual double getFocusDistance() = 0;
    virtual void setFocusDistance(double distance) = 0;
    /// Focal length divided by the width of the iris: 5.6 for f/5.6.
    virtual double getFNumber() = 0;
    virtual void setFNumber(double fNumber) = 0;
    /// Gives the snapshot back.
    virtual void release() = 0;

    /// What SceneNode::getLensSnapshot() and CInterface::getLensSnapshot() return: 0 for null.
    [[nodiscard]] static std::intptr_t toHandle(LensSnapshot* snapshot) {
        return reinterpret_cast<std::intptr_t>(snapshot);
    }
    [[nodiscard]] static LensSnapshot* fromHandle(std::intptr_t handle) {
        return reinterpret_cast<LensSnapshot*>(handle);
    }

protected:
    ~LensSnapshot() = default;
};

} // namespace MVR
