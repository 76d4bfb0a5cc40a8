#pragma once

#include "stage/scene/stage_node.h"

#include <utility>
#include <vector>

namespace Stage {

class Scene;

/// All curves of a scene, or of some nodes, at one moment.
class CurveCopy {
public:
    CurveCopy() = default;
    explicit CurveCopy(const Scene& scene);
    explicit CurveCopy(const std::vector<const StageNode*>& nodes);

    struct Difference {
        bool isSameBits = true;   ///< the same keys, to the last digit
        bool isSameFrames = true; ///< the same keys at the same times
        double largest = 0.0;     ///< between the values of keys
    };
    [[nodiscard]] Difference compare(const CurveCopy& other) const;
    bool operator==(const CurveCopy& other) const = default;

private:
    std::vector<std::pair<const StageNode*, Curves>> curves_;
};

} // namespace Stage
