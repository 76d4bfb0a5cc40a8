#include "stage/takes/report.h"

#include "stage/base/text.h"
#include "stage/rig/tool_plan.h"
#include "stage/scene/stage_node.h"
#include "stage/takes/resimulation.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace Stage {

namespace {

using Json = nlohmann::ordered_json;

Json latencies(const std::vector<double>& values) {
    if (values.empty())
        return nullptr;
    return {{"packets", values.size()},
            {"p50", quantile(values, 0.5)},
            {"p99", quantile(values, 0.99)},
            {"max", quantile(values, 1.0)}};
}

Json keyCounts(const std::vector<const StageNode*>& nodes) {
    Json counts = Json::object();
    for (const StageNode* node : nodes) {
        Json& ofNode = counts[toUtf8(node->getSceneName())];
        for (std::size_t i = 0; i < (node->hasLens() ? kCurveCount : kFirstLensCurve); ++i)
            ofNode[kCurveNames[i]] = node->getCurves()[i].getKeys().size();
    }
    return counts;
}

template <typename... Values>
std::string line(const char* label, const char* format, Values... values) {
    char text[160];
    std::snprintf(text, sizeof text, format, values...);
    std::string result = label;
    result.resize(std::max<std::size_t>(result.size() + 2, 36), ' ');
    return result + text + "\n";
}

/// Counts those of positions and rotations, which a take writes in each frame.
std::string keysPerCurve(const std::vector<const StageNode*>& nodes) {
    std::size_t least = std::numeric_limits<std::size_t>::max();
    std::size_t most = 0;
    for (const StageNode* node : nodes) {
        for (std::size_t i = 0; i < kFirstLensCurve; ++i) {
            const std::size_t keys = node->getCurves()[i].getKeys().size();
            least = std::min(least, keys);
            most = std::max(most, keys);
        }
    }
    least = std::min(least, most);
    return std::to_string(least) + (least == most ? "" : " to " + std::to_string(most));
}

} // namespace

std::string toTable(const Report& report) {
    const TakeFigures& take = report.take;
    const auto asLong = [](std::int64_t number) { return static_cast<long long>(number); };
    std::string table =
        line("frames", "%lld", asLong(take.frames)) +
        line("keys per curve", "%s", keysPerCurve(report.nodes).c_str()) +
        line("late events", "%lld of %lld", asLong(take.lateEvents), asLong(take.events)) +
        line("frames that shared an event", "%lld", asLong(take.sharedFrames));
    if (!take.latenciesMs.empty()) {
        table += line("latency from packet to key (ms)", "p50 %.2f  p99 %.2f  max %.2f",
                      quantile(take.latenciesMs, 0.5), quantile(take.latenciesMs, 0.99),
                      quantile(take.latenciesMs, 1.0));
    }
    if (report.isUndoGood) {
        table += line("one undo, one redo", "%s",
                      *report.isUndoGood ? "removed the take, restored it" : "failed");
    }
    for (const ResimulationFigures& figures : report.resimulations)
        table += toTable(figures);
    return table;
}

ResimulationFigures describe(const std::vector<Setting>& settings,
                             const CurveCopy::Difference& difference, const ResimulationRun& run,
                             double span) {
    ResimulationFigures figures;
    for (const Setting& setting : settings)
        figures.settings.push_back(setting.toText());
    figures.difference = difference;
    figures.seconds = run.seconds;
    figures.isOffGrid = run.isOffGrid;
    figures.isCutShort = run.isCutShort;
    figures.timesRealTime = run.seconds > 0.0 && !run.isCutShort ? span / run.seconds : 0.0;
    return figures;
}

std::string toTable(const ResimulationFigures& figures) {
    std::string label = "resimulated, unchanged";
    for (std::size_t i = 0; i < figures.settings.size(); ++i)
        label = (i == 0 ? "resimulated, " : label + ", ") + figures.settings[i];
    std::string result;
    if (figures.isOffGrid)
        result = line(label.c_str(), "%s",
                      "starts between two frames: its keys lie between those of the take");
    else if (figures.difference.isSameBits)
        result = line(label.c_str(), "%s", "the same to the bit");
    else
        result = line(label.c_str(), "largest difference %.3g, %s", figures.difference.largest,
                      figures.difference.isSameFrames ? "same frames" : "different frames");
    return result + (figures.isCutShort ? line("", "%s", "stopped before the end")
                                        : line("", "%.0f times real time", figures.timesRealTime));
}

std::string toJson(const Report& report) {
    Json json = {
        {"rate", report.rate},
        {"start", report.start},
        {"end", report.take.endTime},
        {"frames", report.take.frames},
        {"events", report.take.events},
        {"late_events", report.take.lateEvents},
        {"frames_sharing_an_event", report.take.sharedFrames},
        {"cut_short", report.take.isCutShort},
        {"latency_ms", latencies(report.take.latenciesMs)},
        {"keys", keyCounts(report.nodes)},
        {"undo_redo", report.isUndoGood ? Json(*report.isUndoGood) : Json(nullptr)},
        {"resimulations", Json::array()},
        {"notes", Json::array()},
    };
    for (const std::string& note : report.notes)
        json["notes"].push_back(toUtf8(note));
    for (const ResimulationFigures& figures : report.resimulations) {
        Json settings = Json::array();
        for (const std::string& setting : figures.settings)
            settings.push_back(toUtf8(setting));
        json["resimulations"].push_back({{"settings", settings},
                                         {"off_grid", figures.isOffGrid},
                                         {"same_bits", figures.difference.isSameBits},
                                         {"same_frames", figures.difference.isSameFrames},
                                         {"largest_difference", figures.difference.largest},
                                         {"seconds", figures.seconds},
                                         {"times_real_time", figures.timesRealTime},
                                         {"cut_short", figures.isCutShort}});
    }
    return json.dump(2) + "\n";
}

} // namespace Stage
