#include "stage/export/curve_table.h"

#include "stage/base/text.h"

#include <algorithm>
#include <array>

namespace Stage {

namespace {

bool isSameTime(double a, double b) {
    return b - a <= kSameTimeSeconds;
}

} // namespace

std::vector<double> keyTimes(const Curves& curves, std::size_t first, std::size_t end) {
    std::vector<double> times;
    for (std::size_t i = first; i < end; ++i)
        for (const Key& key : curves[i].getKeys())
            times.push_back(key.time);
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end(), isSameTime), times.end());
    return times;
}

std::string toCurveTable(const std::vector<const StageNode*>& nodes) {
    std::string table = "node,time";
    for (const char* name : kCurveNames)
        table += std::string(",") + name;
    table += '\n';
    for (const StageNode* node : nodes) {
        const Curves& curves = node->getCurves();
        std::array<std::size_t, kCurveCount> next{};
        for (const double time : keyTimes(curves, 0, kCurveCount)) {
            table += quoted(node->getSceneName()) + ',' + toText(time);
            for (std::size_t i = 0; i < kCurveCount; ++i) {
                const auto& keys = curves[i].getKeys();
                table += ',';
                if (next[i] < keys.size() && isSameTime(time, keys[next[i]].time))
                    table += toText(keys[next[i]++].value);
            }
            table += '\n';
        }
    }
    return table;
}

} // namespace Stage
