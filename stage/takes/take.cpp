#include "stage/takes/take.h"

#include "core/contract/setting_ids.h"
#include "stage/base/machine.h"
#include "stage/host/core_code.h"
#include "stage/host/session.h"
#include "stage/scene/scene.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace Stage {

namespace {

using Clock = std::chrono::steady_clock;

/// The longest sleep, and so the longest delay of a request to stop.
constexpr std::chrono::milliseconds kLongestSleep{20};

double secondsOf(Clock::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

/// Watches the keys of a take as they are written.
class TakeMeter {
public:
    TakeMeter(TakeFigures& figures, const TakePlan& plan, const StageNode* probe)
        : figures_(figures), plan_(plan), probe_(probe) {}

    void onKey(const StageNode& node, double time) {
        if (framesInEvent_ == 0 || time > lastTime_) {
            ++framesInEvent_;
            lastTime_ = time;
            if (plan_.onFrame)
                plan_.onFrame(time);
        }
        if (&node != probe_)
            return;
        // A value of the previous frame doesn't belong to a packet of this frame.
        const double sent = node.getCurves()[0].getKeys().back().value;
        if (sent != lastSent_) {
            lastSent_ = sent;
            figures_.latenciesMs.push_back((secondsOf(Clock::now().time_since_epoch()) - sent) *
                                           1000.0);
        }
    }

    void endEvent(bool isLate) {
        if (framesInEvent_ == 0)
            return;
        ++figures_.events;
        figures_.frames += framesInEvent_;
        figures_.lateEvents += isLate ? 1 : 0;
        figures_.sharedFrames += framesInEvent_ > 1 ? framesInEvent_ : 0;
        figures_.endTime = lastTime_;
        framesInEvent_ = 0;
    }

private:
    TakeFigures& figures_;
    const TakePlan& plan_;
    const StageNode* probe_;
    std::int64_t framesInEvent_ = 0;
    double lastTime_ = 0.0;
    double lastSent_ = 0.0;
};

/// The host's loop: runs what is due in the core until the take has ended.
void runLoop(Session& session, TakeMeter& meter, TakeFigures& figures,
             const ProgressCall& progress) {
    MVR::CoreInterface& core = session.getCore();
    const auto step = std::chrono::duration<double>(session.timeline.getStep());
    Clock::time_point due = Clock::now();
    while (core.isRecording()) {
        if (isStopRequested()) {
            figures.isCutShort = true;
            core.stopRecording();
            break;
        }
        const Clock::time_point now = Clock::now();
        if (now < due) {
            std::this_thread::sleep_for(std::min<Clock::duration>(due - now, kLongestSleep));
            continue;
        }
        const bool isLate = now - due > step;
        const std::int32_t waitMs = session.pump();
        meter.endEvent(isLate);
        if (progress)
            progress(session.timeline.getTime(), figures);
        due = Clock::now() + (waitMs >= 0 ? std::chrono::milliseconds(waitMs) : kLongestSleep);
    }
}

template <typename Value>
class SettingForNow {
public:
    SettingForNow(MVR::CoreInterface& core, std::int32_t id, Value value) : core_(core), id_(id) {
        core_.getProperty(id_, &old_);
        core_.setProperty(id_, &value);
    }
    SettingForNow(const SettingForNow&) = delete;
    SettingForNow& operator=(const SettingForNow&) = delete;
    ~SettingForNow() { core_.setProperty(id_, &old_); }

private:
    MVR::CoreInterface& core_;
    std::int32_t id_;
    Value old_{};
};

} // namespace

double quantile(std::vector<double> values, double share) {
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    const double rank = std::ceil(share * static_cast<double>(values.size()));
    return values[static_cast<std::size_t>(std::fmax(rank, 1.0)) - 1];
}

std::optional<TakeFigures> runTake(Session& session, const TakePlan& plan, const StageNode* probe,
                                   const ProgressCall& progress, std::string& error) {
    MVR::CoreInterface& core = session.getCore();
    // The core keeps its settings in the user's files; a take restores them.
    const SettingForNow<std::int32_t> countdown(core, MVR::Setting::kStartCountdown,
                                                plan.countdownSeconds);
    const SettingForNow<bool> autoExpand(core, MVR::Setting::kAutoExpand, plan.autoExpand);
    core.setSlowMotion(plan.slowMotion);

    TakeFigures figures;
    figures.endTime = session.timeline.getTime();
    TakeMeter meter(figures, plan, probe);
    session.scene.setKeyListener(
        [&meter](const StageNode& node, double time) { meter.onKey(node, time); });
    const std::int32_t code = core.startRecording();
    if (code == 0)
        runLoop(session, meter, figures, progress);
    session.scene.setKeyListener({});
    if (code != 0) {
        error = "the core can't start a take: " + describeCode(code);
        return std::nullopt;
    }
    return figures;
}

} // namespace Stage
