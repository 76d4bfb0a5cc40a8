#include "stage/commands/devices.h"

#include "stage/base/machine.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/host/core_code.h"
#include "stage/host/session.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

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
         "how long to listen, 0 to 1000000; by default until Ctrl+C\non a terminal, and 1 second "
         "elsewhere"},
        {"--once", nullptr, "no live display: listen, then print the values once"},
    });
}

std::string help() {
    return "usage: mirvane-stage devices [OPTIONS]\n\n"
           "Shows the input devices, their controls and the values they send: live on a terminal,\n"
           "once if the output goes elsewhere. The first column is what a binding names.\n"
           "The error stream reports each driver that doesn't work.\n\n" +
           describe(deviceOptions()) + "\nexit codes\n" + describe(kCodes);
}

/// Returns the devices that the stage can listen to: nobody presses keys here.
std::vector<MVR::CoreDevice> listDevices(Session& session) {
    std::vector<MVR::CoreDevice> devices = session.getInputs().list();
    devices.erase(std::remove_if(devices.begin(), devices.end(),
                                 [](const auto& device) { return device.isBuiltIn; }),
                  devices.end());
    return devices;
}

/// Returns a line for each device and each of its controls, which begins with what follows "=" in a
/// binding.
std::string toText(const std::vector<MVR::CoreDevice>& devices) {
    std::string text;
    for (const MVR::CoreDevice& device : devices) {
        std::string name = device.name;
        if (device.index != 0)
            name += "#" + std::to_string(device.index);
        text += name + ": " + std::to_string(device.controls.size()) + " controls\n";
        for (const MVR::CoreControl& control : device.controls) {
            const std::string binding =
                name + ":" + control.type + ":" + std::to_string(control.index);
            char value[32];
            std::snprintf(value, sizeof value, "%14.6g", control.value);
            text += "  " + binding;
            text.append(binding.size() < 40 ? 40 - binding.size() : 1, ' ');
            text += std::string(value) + "  " + control.description + "\n";
        }
    }
    return text;
}

/// Listens until the time is over or the user stops it; with `isLive` it shows each state. Returns
/// the core's code.
std::int32_t listen(Session& session, double seconds, bool isLive) {
    MVR::CoreInputs& inputs = session.getInputs();
    const std::int32_t code = inputs.setListening(true);
    const Clock::time_point end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                     std::chrono::duration<double>(seconds));
    while (!isStopRequested() && (seconds < 0.0 || Clock::now() < end)) {
        std::this_thread::sleep_for(kRefresh);
        (void)inputs.update(); // no take runs, so it can't be refused
        if (isLive) {
            std::printf("\x1b[H\x1b[J%s", toText(listDevices(session)).c_str());
            for (const std::string& line : session.listDriverFaults())
                std::printf("%s\n", line.c_str());
            std::fflush(stdout);
        }
    }
    return code;
}

} // namespace

ExitCode devicesCommand(const std::vector<std::string>& words) {
    InstallValues values;
    bool isLive = isTerminal(1);
    double seconds = -1.0;
    const auto take = [&](const Argument& argument, std::string& error) {
        isLive = isLive && argument.name != "--once";
        return argument.name != "--seconds" ||
               readNumber(argument, 0.0, kLatestTime, seconds, error);
    };
    if (const auto code = readCommand(words, deviceOptions(), help(), values, take))
        return *code;
    Session session;
    std::string error;
    if (!session.open(values, error))
        return fail(ExitCode::CoreOrToolMissing, error);
    catchStopRequests();
    if (seconds < 0.0 && !isLive)
        seconds = kSnapshotSeconds;
    const std::int32_t code = listen(session, seconds, isLive);
    const std::vector<MVR::CoreDevice> devices = listDevices(session);
    if (!isLive)
        std::fputs(toText(devices).c_str(), stdout);
    if (code != 0)
        complain(describeCode(code));
    for (const std::string& line : session.listDriverFaults())
        complain(line);
    (void)session.getInputs().setListening(false); // the session ends
    if (devices.empty()) {
        return fail(
            ExitCode::CoreOrToolMissing,
            "no devices: no drivers in the folder \"unidevice\" of the shared data (--data)");
    }
    return ExitCode::Ok;
}

} // namespace Stage
