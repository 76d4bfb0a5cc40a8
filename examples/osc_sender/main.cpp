#include "motion.h"
#include "options.h"

#include <lo/lo.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr double kStepSeconds = 0.01;       // of a movement without duration
constexpr double kLongestWaitSeconds = 1e9; // what the clock can hold

enum ExitCode { kDone = 0, kSendingFailed = 1, kWrongOptions = 2, kBadMotionFile = 3 };

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int) {
    interrupted = 1;
}

struct FreeAddress {
    void operator()(lo_address address) const { lo_address_free(address); }
};
using Address = std::unique_ptr<std::remove_pointer_t<lo_address>, FreeAddress>;

struct FreeBundle {
    void operator()(lo_bundle bundle) const { lo_bundle_free_recursive(bundle); }
};
using Bundle = std::unique_ptr<std::remove_pointer_t<lo_bundle>, FreeBundle>;

// Waits in short steps, so that Ctrl+C is noticed. Returns false after Ctrl+C.
bool waitUntil(Clock::time_point deadline) {
    constexpr std::chrono::milliseconds kStep(50);
    while (!interrupted) {
        const Clock::time_point now = Clock::now();
        if (now >= deadline)
            return true;
        std::this_thread::sleep_until(std::min(deadline, now + kStep));
    }
    return false;
}

template <class Numbers>
void add(const Bundle& bundle, const std::string& address, const Numbers& numbers) {
    lo_message message = lo_message_new(); // the bundle frees it
    for (double number : numbers)
        lo_message_add_double(message, number);
    lo_bundle_add_message(bundle.get(), address.c_str(), message);
}

class Sender {
public:
    explicit Sender(const Options& options)
        : positionPath_(options.prefix + "/position"), rotationPath_(options.prefix + "/rotation"),
          sentPath_(options.prefix + "/sent"),
          target_(lo_address_new_with_proto(LO_UDP, options.host.c_str(),
                                            std::to_string(options.port).c_str())) {}

    bool send(const MotionSample& sample) {
        const Bundle bundle(lo_bundle_new({0U, 1U})); // the time tag for "immediately"
        add(bundle, positionPath_, sample.position);
        add(bundle, rotationPath_, sample.rotation);
        const double now = Seconds(Clock::now().time_since_epoch()).count();
        add(bundle, sentPath_, std::initializer_list<double>{now, static_cast<double>(sentCount_)});
        if (!target_ || lo_send_bundle(target_.get(), bundle.get()) < 0)
            return false;
        ++sentCount_;
        return true;
    }

    std::string error() const { return target_ ? lo_address_errstr(target_.get()) : "no address"; }
    long long sentCount() const { return sentCount_; }

private:
    std::string positionPath_;
    std::string rotationPath_;
    std::string sentPath_;
    Address target_;
    long long sentCount_ = 0;
};

// Each sample has a deadline counted from the start, so delays don't add up.
ExitCode stream(const Motion& motion, const Options& options, Sender& sender) {
    const double first = motion.front().timeSeconds;
    const double span = motion.back().timeSeconds - first;
    // A repeated movement starts again one mean step after its end.
    const double period = span > 0.0 ? span + span / static_cast<double>(motion.size() - 1)
                                     : kStepSeconds * static_cast<double>(motion.size());
    const auto start = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                          Seconds(options.startDelaySeconds));
    double latestMs = 0.0;
    ExitCode code = kDone;
    for (std::size_t i = 0; options.loop || i < motion.size(); ++i) {
        const MotionSample& sample = motion[i % motion.size()];
        const double moment =
            (static_cast<double>(i / motion.size()) * period + sample.timeSeconds - first) /
            options.speed;
        const auto deadline = start + std::chrono::duration_cast<Clock::duration>(
                                          Seconds(std::min(moment, kLongestWaitSeconds)));
        if ((options.seconds > 0.0 && moment >= options.seconds) || !waitUntil(deadline))
            break;
        latestMs = std::max(latestMs, 1000.0 * Seconds(Clock::now() - deadline).count());
        if (!sender.send(sample)) {
            std::fprintf(stderr, "mirvane-osc-sender: sending failed: %s\n",
                         sender.error().c_str());
            code = kSendingFailed;
            break;
        }
    }
    if (!options.quiet)
        std::printf("%lld samples sent, at most %.1f ms late\n", sender.sentCount(), latestMs);
    return code;
}

} // namespace

int main(int count, char** words) {
    Options options;
    std::string error;
    if (!readOptions(count, words, options, error)) {
        std::fprintf(stderr, "mirvane-osc-sender: %s\nTry --help.\n", error.c_str());
        return kWrongOptions;
    }
    if (options.help || options.version) {
        std::fputs(options.help ? kHelp : "mirvane-osc-sender " MIRVANE_VERSION "\n", stdout);
        return kDone;
    }
    Motion motion;
    MotionNotes notes;
    if (options.file.empty()) {
        motion = makeHandheldMotion();
    } else if (!readMotion(options.file, motion, notes, error)) {
        std::fprintf(stderr, "mirvane-osc-sender: %s\n", error.c_str());
        return kBadMotionFile;
    }
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    if (!options.quiet) {
        std::printf("Sending %zu samples to %s port %d\n", motion.size(), options.host.c_str(),
                    options.port);
        if (const std::string told = notes.toText(); !told.empty())
            std::printf("%s: %s\n", options.file.c_str(), told.c_str());
        std::fflush(stdout);
    }
    Sender sender(options);
    return stream(motion, options, sender);
}
