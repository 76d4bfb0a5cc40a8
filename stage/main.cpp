#include "core/util/sdk/singleton.h"
#include "stage/commands/commands.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr const char* kHelp = R"(usage: mirvane-stage COMMAND [OPTIONS]

The stage is a small host: it records tools that are driven by live input, simulates takes again,
keeps scenes and models, and writes glTF.

  record      place tools, bind live input to them, record a take and write it
  resimulate  run the takes of a saved scene again, with other settings
  model       save tools as a model, load, list and show models
  tools       list the tools that can be placed
  devices     show what the input devices send

mirvane-stage COMMAND --help tells more. --version tells the version.
)";

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words.empty()) {
        std::fputs(kHelp, stderr);
        return static_cast<int>(Stage::ExitCode::Usage);
    }
    const std::string& command = words.front();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    Stage::ExitCode code = Stage::ExitCode::Ok;
    if (command == "record") {
        code = Stage::recordCommand(rest);
    } else if (command == "resimulate") {
        code = Stage::resimulateCommand(rest);
    } else if (command == "model") {
        code = Stage::modelCommand(rest);
    } else if (command == "tools") {
        code = Stage::toolsCommand(rest);
    } else if (command == "devices") {
        code = Stage::devicesCommand(rest);
    } else if (command == "help" || Stage::answerHelp({command}, kHelp)) {
        if (command == "help") {
            std::fputs(kHelp, stdout);
        }
    } else {
        Stage::complain("no command named \"" + command + "\"; see mirvane-stage --help");
        code = Stage::ExitCode::Usage;
    }
    MVR::Util::SingletonCollector::destroyAll();
    return static_cast<int>(code);
}
