#include "instance/open_snapshots.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace MVR {

/// Hands each call on to the adaptor's own while that is out. It stays for the next one, so that a
/// tool that keeps it too long reads nothing.
class OpenSnapshots::Lens final : public LensSnapshot {
public:
    explicit Lens(OpenSnapshots& owner) : owner_(owner) {}

    [[nodiscard]] bool isFree() const { return lens_ == nullptr; }
    void hold(LensSnapshot& lens) { lens_ = &lens; }
    void drop() { lens_ = nullptr; }

    double getFocalLengthMm() override { return isFree() ? 0.0 : lens_->getFocalLengthMm(); }
    void setFocalLengthMm(double millimetres) override {
        if (!isFree())
            lens_->setFocalLengthMm(millimetres);
    }
    double getFocusDistance() override { return isFree() ? 0.0 : lens_->getFocusDistance(); }
    void setFocusDistance(double distance) override {
        if (!isFree())
            lens_->setFocusDistance(distance);
    }
    double getFNumber() override { return isFree() ? 0.0 : lens_->getFNumber(); }
    void setFNumber(double fNumber) override {
        if (!isFree())
            lens_->setFNumber(fNumber);
    }
    void release() override {
        owner_.removeLens(*this);
        if (LensSnapshot* const lens = std::exchange(lens_, nullptr))
            lens->release();
    }

private:
    OpenSnapshots& owner_;
    LensSnapshot* lens_ = nullptr; // the adaptor's
};

OpenSnapshots::OpenSnapshots() = default;
OpenSnapshots::~OpenSnapshots() = default;

LensSnapshot* OpenSnapshots::addLens(SceneNode& node, LensSnapshot& lens) {
    auto place = std::find_if(lenses_.begin(), lenses_.end(),
                              [](const std::unique_ptr<Lens>& each) { return each->isFree(); });
    if (place == lenses_.end())
        place = lenses_.insert(place, std::make_unique<Lens>(*this));
    (*place)->hold(lens);
    open_.push_back({next_++, &node, place->get(), Kind::Lens});
    return place->get();
}

void OpenSnapshots::remove(const SceneNode& node, Kind kind) {
    const auto found = std::find_if(open_.rbegin(), open_.rend(), [&](const Open& each) {
        return each.node == &node && each.kind == kind;
    });
    if (found != open_.rend())
        open_.erase(std::next(found).base());
}

void OpenSnapshots::removeLens(const Lens& lens) {
    open_.erase(
        std::remove_if(
            open_.begin(), open_.end(), [&lens](const Open& each) { return each.lens == &lens; }),
        open_.end());
}

void OpenSnapshots::forget(const SceneNode& node) {
    for (const Open& each : open_)
        if (each.node == &node && each.lens != nullptr)
            each.lens->drop();
    open_.erase(std::remove_if(open_.begin(), open_.end(),
                               [&node](const Open& each) { return each.node == &node; }),
                open_.end());
}

void OpenSnapshots::end(const Open& snapshot) {
    NodeMeshHandler* const meshes = snapshot.node->getMeshHandler();
    switch (snapshot.kind) {
    case Kind::Transform:
        if (NodeTransformHandler* const transforms = snapshot.node->getTransformHandler())
            transforms->endSnapshot(snapshot.node);
        break;
    case Kind::Helper:
        if (meshes != nullptr)
            meshes->endHelperSnapshot(snapshot.node);
        break;
    case Kind::Mesh:
        if (meshes != nullptr)
            meshes->endMeshSnapshot(snapshot.node);
        break;
    case Kind::Lens:
        snapshot.lens->release();
        break;
    }
}

std::string OpenSnapshots::endFrom(std::uint64_t first) {
    static constexpr const char* kNames[] = {"transform", "helper", "mesh", "lens"}; // by Kind
    std::string ended;
    while (!open_.empty() && open_.back().number >= first) {
        const Open last = open_.back();
        open_.pop_back();
        ended += (ended.empty() ? "the " : ", the ") +
                 std::string(kNames[static_cast<std::size_t>(last.kind)]) + " of node " +
                 last.node->getName();
        end(last);
    }
    return ended;
}

} // namespace MVR
