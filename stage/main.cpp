#include "core/util/sdk/singleton.h"
#include "stage/commands/commands.h"
#include "stage/commands/devices.h"
#include "stage/commands/model.h"
#include "stage/commands/outputs.h"
#include "stage/commands/record.h"
#include "stage/commands/resimulate.h"
#include "stage/commands/tools.h"

#include <string>
#include <vector>

namespace {

constexpr const char* kAbout =
    "The stage is a small host: it records tools that live input drives, simulates takes again,\n"
    "saves scenes and models, and writes glTF.";

constexpr Stage::Command kCommands[] = {
    {"record", "place tools, bind live input to them, record a take and write it",
     Stage::recordCommand},
    {"resimulate", "run the takes of a saved scene again, with other parameters",
     Stage::resimulateCommand},
    {"model", "save tools as a model, load, list and show models", Stage::modelCommand},
    {"tools", "list the tools that can be placed", Stage::toolsCommand},
    {"devices", "show what the input devices send", Stage::devicesCommand},
};

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    const Stage::ExitCode code =
        Stage::flushOutput(Stage::runCommand("", kAbout, kCommands, words));
    MVR::Util::SingletonCollector::destroyAll();
    return static_cast<int>(code);
}
