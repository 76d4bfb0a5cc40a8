#include "stage/scene/curve_copy.h"

#include "stage/scene/scene.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Stage {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::infinity();

} // namespace

CurveCopy::CurveCopy(const Scene& scene) {
    for (const auto& node : scene.getNodes())
        curves_.emplace_back(node.get(), node->getCurves());
}

CurveCopy::CurveCopy(const std::vector<const StageNode*>& nodes) {
    for (const StageNode* node : nodes)
        curves_.emplace_back(node, node->getCurves());
}

CurveCopy::Difference CurveCopy::compare(const CurveCopy& other) const {
    Difference difference;
    difference.isSameFrames = curves_.size() == other.curves_.size();
    difference.isSameBits = difference.isSameFrames;
    for (std::size_t n = 0; n < curves_.size() && difference.isSameFrames; ++n) {
        for (std::size_t i = 0; i < kCurveCount; ++i) {
            const auto& mine = curves_[n].second[i].getKeys();
            const auto& theirs = other.curves_[n].second[i].getKeys();
            difference.isSameFrames = difference.isSameFrames && mine.size() == theirs.size();
            for (std::size_t k = 0; k < std::min(mine.size(), theirs.size()); ++k) {
                difference.isSameBits = difference.isSameBits && mine[k] == theirs[k];
                const double apart = std::fabs(mine[k].time - theirs[k].time);
                difference.isSameFrames = difference.isSameFrames && apart <= kSameTimeSeconds;
                const double between = std::fabs(mine[k].value - theirs[k].value);
                difference.largest =
                    std::max(difference.largest, std::isnan(between) ? kNoNumber : between);
            }
        }
    }
    difference.isSameBits = difference.isSameBits && difference.isSameFrames;
    return difference;
}

} // namespace Stage
