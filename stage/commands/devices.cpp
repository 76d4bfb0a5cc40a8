#include "stage/commands/devices.h"

#include "stage/base/machine.h"
#include "stage/commands/commands.h"
#include "stage/host/core_library.h"
#include "stage/host/device_reader.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

namespace Stage {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kRefresh{100};
constexpr double kSnapshotSeconds = 1.0;

const std::vector<ExitCode> kCodes = {ExitCode::Ok, ExitCode::Usage, ExitCode::CoreOrToolMissing,
                                      ExitCode::OutputNotWritten};

std::vector<Option> deviceOptions() {
    return withCommonOptions({
        {"--seconds", "N",
         "how long to listen; by default until Ctrl+C on a terminal,\nand 1 second elsewhere"},
        {"--once", nullptr, "no live display: listen, then print the values once"},
    });
}

std::string help() {
    return "usage: mirvane-stage devices [OPTIONS]\n\n"
           "Shows the input devices, their controls and the values they send: live on a terminal,\n"
           "once if the output goes elsewhere. The first column is what a binding names.\n\n" +
           describe(deviceOptions()) + "\nexit codes\n" + describe(kCodes);
}

/// Listens until the time is over or the user stops it; with `isLive` it shows each state.
void listen(DeviceReader& reader, double seconds, bool isLive) {
    const Clock::time_point end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                     std::chrono::duration<double>(seconds));
    while (!isStopRequested() && (seconds < 0.0 || Clock::now() < end)) {
        std::this_thread::sleep_for(kRefresh);
        reader.update();
        if (isLive) {
            std::printf("\x1b[H\x1b[J%s", reader.toText().c_str());
            std::fflush(stdout);
        }
    }
}

} // namespace

ExitCode devicesCommand(const std::vector<std::string>& words) {
    InstallValues values;
    bool isLive = isTerminal(1);
    double seconds = -1.0;
    const auto take = [&](const Argument& argument, std::string& error) {
        isLive = isLive && argument.name != "--once";
        return argument.name != "--seconds" || readNumber(argument, 0.0, seconds, error);
    };
    if (const auto code = readCommand(words, deviceOptions(), help(), values, take))
        return *code;
    const std::string core = findCore(values.core);
    if (core.empty() && values.data.empty()) {
        complain("there is no core library; name it with --core, or the folder of the shared data "
                 "with --data");
        return ExitCode::CoreOrToolMissing;
    }
    catchStopRequests();
    DeviceReader reader;
    for (const std::string& fault : reader.load(driverFolder(values, core)))
        complain(fault);
    if (seconds < 0.0 && !isLive)
        seconds = kSnapshotSeconds;
    listen(reader, seconds, isLive);
    if (!isLive)
        std::fputs(reader.toText().c_str(), stdout);
    std::fputs(DeviceReader::getLog().c_str(), stderr);
    if (reader.isEmpty()) {
        complain("no devices: no drivers in " + driverFolder(values, core));
        return ExitCode::CoreOrToolMissing;
    }
    return ExitCode::Ok;
}

} // namespace Stage
