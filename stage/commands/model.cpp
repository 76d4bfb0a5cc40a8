#include "stage/commands/model.h"

#include "stage/commands/commands.h"
#include "stage/commands/model_files.h"
#include "stage/commands/model_views.h"

namespace Stage {

namespace {

constexpr Command kCommands[] = {
    {"save", "write tools of a scene as a model", modelSaveCommand},
    {"load", "make the tools of a model, in a new scene or in one that was saved",
     modelLoadCommand},
    {"list", "list what can be made: kinds of tools, and the models of the PRM folders",
     modelListCommand},
    {"show", "print a model or a profile as text, and say what is wrong with a bad one",
     modelShowCommand},
};

} // namespace

ExitCode modelCommand(const std::vector<std::string>& words) {
    return runCommand("model ",
                      "Models hold tools and their objects, to be used again in any scene.",
                      kCommands, words);
}

} // namespace Stage
