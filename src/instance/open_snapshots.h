// The snapshots of scene nodes that a tool has taken and not yet given back.
#pragma once

#include "plugins/contract/scene_node.h"
#include "plugins/contract/snapshots.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace MVR {

/// Each snapshot has a number, so that those of one call of the tool are known when it returns.
class OpenSnapshots {
public:
    enum class Kind : std::uint8_t { Transform, Helper, Mesh, Lens };

    OpenSnapshots();
    OpenSnapshots(const OpenSnapshots&) = delete;
    OpenSnapshots& operator=(const OpenSnapshots&) = delete;
    ~OpenSnapshots();

    /// Returns the number of the next one.
    [[nodiscard]] std::uint64_t getNext() const { return next_; }
    [[nodiscard]] bool isEmpty() const { return open_.empty(); }
    void add(SceneNode& node, Kind kind) { open_.push_back({next_++, &node, nullptr, kind}); }
    /// Returns what stands for `lens`, so that its release() is seen.
    [[nodiscard]] LensSnapshot* addLens(SceneNode& node, LensSnapshot& lens);
    /// The tool gives the newest of `node` back.
    void remove(const SceneNode& node, Kind kind);
    /// The node ends: its snapshots go with it.
    void forget(const SceneNode& node);
    void forgetAll() { open_.clear(); }
    /// Ends those from number `first` on. Returns what they were, for the log.
    [[nodiscard]] std::string endFrom(std::uint64_t first);

private:
    class Lens;
    struct Open {
        std::uint64_t number;
        SceneNode* node;
        Lens* lens; // of a lens
        Kind kind;
    };

    static void end(const Open& snapshot);
    void removeLens(const Lens& lens);

    std::vector<Open> open_; // oldest first
    std::vector<std::unique_ptr<Lens>> lenses_;
    std::uint64_t next_ = 0;
};

} // namespace MVR
