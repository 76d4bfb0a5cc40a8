#pragma once

#include "plugins/contract/snapshots.h"
#include "stage/scene/lens.h"

namespace Stage {

class StageNode;

/// The transform of one node at one time. Part of its node; only one may be in use at a time.
class NodeTransform final : public MVR::TransformSnapshot {
public:
    explicit NodeTransform(StageNode& node) : node_(node) {}

    /// Returns null if it is in use already.
    NodeTransform* open(double time);
    void close() { isOpen_ = false; }

    void get(double matrix[16]) override;
    void set(const double matrix[16]) override;
    void getGlobal(double matrix[16]) override;
    void setGlobal(const double matrix[16]) override;
    void getPosition(double position[3]) override;
    void setPosition(const double position[3]) override;
    void getRotation(double quaternion[4]) override;
    void setRotation(const double quaternion[4]) override;

private:
    StageNode& node_;
    double time_ = 0.0;
    bool isOpen_ = false;
};

/// The lens of one camera at one time. Part of its node; only one may be in use at a time.
class NodeLens final : public MVR::LensSnapshot {
public:
    explicit NodeLens(StageNode& node) : node_(node) {}

    /// Returns null if it is in use already.
    NodeLens* open(double time);

    double getFocalLengthMm() override { return get(kFocalLength); }
    void setFocalLengthMm(double millimetres) override { set(kFocalLength, millimetres); }
    double getFocusDistance() override { return get(kFocusDistance); }
    void setFocusDistance(double distance) override { set(kFocusDistance, distance); }
    double getFNumber() override { return get(kFNumber); }
    void setFNumber(double fNumber) override { set(kFNumber, fNumber); }
    void release() override { isOpen_ = false; }

private:
    [[nodiscard]] double get(LensPart part) const;
    void set(LensPart part, double value);

    StageNode& node_;
    double time_ = 0.0;
    bool isOpen_ = false;
};

/// The mesh of one node, for reading.
class NodeMesh final : public MVR::MeshSnapshot {
public:
    explicit NodeMesh(StageNode& node) : node_(node) {}

    void get(MVR::CMesh& mesh) override;

private:
    StageNode& node_;
};

/// One node as an object whose mesh can be replaced.
class NodeHelper final : public MVR::HelperSnapshot {
public:
    explicit NodeHelper(StageNode& node) : node_(node) {}

    void set(const MVR::CMesh& mesh) override;

private:
    StageNode& node_;
};

} // namespace Stage
