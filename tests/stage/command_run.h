#pragma once

#include "platform/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Stage {

constexpr const char* kBindings = R"(bind Position X=OSC:/camera/position:0
bind Position Y=OSC:/camera/position:1
bind Position Z=OSC:/camera/position:2
bind Rotation X=OSC:/camera/rotation:0
bind Rotation Y=OSC:/camera/rotation:1
bind Rotation Z=OSC:/camera/rotation:2
bind Rotation W=OSC:/camera/rotation:3
set *.deadzone=0
)";

/// Returns a free UDP port of the loopback.
inline int freePort() {
    const int handle = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool isBound = bind(handle, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                         getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(handle);
    return isBound ? ntohs(address.sin_port) : 0;
}

/// Programs as a user runs them, each in a folder of its own.
class CommandRun : public testing::Test {
protected:
    void SetUp() override {
        const std::string osc = folder.add("osc.xml", "<osc><port>" + port + "</port></osc>");
        setenv("MIRVANE_OSC_CONFIG", osc.c_str(), 1);
        setenv("MIRVANE_CORE", CORE, 1);
    }

    /// Runs a shell command in the folder; returns its exit code.
    int run(const std::string& command) {
        const int status = std::system(
            ("cd '" + folder.path + "' && { " + command + "; } >stdout 2>stderr").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// Runs a command that must end with this code and with these words in its message.
    void expectFailure(const std::string& command, int code, const std::string& words) {
        EXPECT_EQ(run(command), code) << command << "\n" << read("stderr");
        EXPECT_NE(read("stderr").find(words), std::string::npos) << command << "\n"
                                                                 << read("stderr");
    }
    std::string read(const std::string& name) const {
        EXPECT_TRUE(std::filesystem::exists(folder.path + name)) << name;
        return folder.read(name);
    }
    /// Returns what the last command printed as messages, but for those of a machine that is busy.
    std::string readMessages() const {
        std::istringstream lines(read("stderr"));
        std::string messages;
        for (std::string line; std::getline(lines, line);)
            if (line.find(" frames came late") == std::string::npos)
                messages += line + "\n";
        return messages;
    }
    /// Returns the numbers of a table of curves, without the name of the node.
    std::vector<std::vector<double>> readTable(const std::string& name) const {
        std::vector<std::vector<double>> rows;
        std::istringstream lines(read(name));
        std::string line;
        std::getline(lines, line);
        while (std::getline(lines, line)) {
            std::istringstream fields(line.substr(line.find(',') + 1));
            rows.emplace_back();
            for (std::string field; std::getline(fields, field, ',');)
                rows.back().push_back(std::strtod(field.c_str(), nullptr));
        }
        return rows;
    }

    TemporaryFolder folder;
    const std::string port = std::to_string(freePort());
};

} // namespace Stage
