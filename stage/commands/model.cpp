#include "stage/commands/commands.h"
#include "stage/commands/model_commands.h"

#include <cstdio>

namespace Stage {

namespace {

constexpr const char* kHelp = R"(usage: mirvane-stage model save|load|list|show [OPTIONS]

Models hold tools and their objects, to be used again in any scene.

  save   write tools of a scene as a model
  load   make the tools of a model, in a new scene or in one that was saved
  list   list what can be made: kinds of tools, and the models of the PRM folders
  show   print a model or a profile as text, and say what is wrong with a bad one

mirvane-stage model COMMAND --help tells more.
)";

} // namespace

ExitCode modelCommand(const std::vector<std::string>& words) {
    if (words.empty()) {
        std::fputs(kHelp, stderr);
        return ExitCode::Usage;
    }
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    const std::string& command = words.front();
    if (command == "save") {
        return modelSaveCommand(rest);
    }
    if (command == "load") {
        return modelLoadCommand(rest);
    }
    if (command == "list") {
        return modelListCommand(rest);
    }
    if (command == "show") {
        return modelShowCommand(rest);
    }
    if (answerHelp({command}, kHelp)) {
        return ExitCode::Ok;
    }
    complain("no command named \"model " + command + "\"; see mirvane-stage model --help");
    return ExitCode::Usage;
}

} // namespace Stage
