#include "stage/commands/model.h"

#include "stage/commands/commands.h"
#include "stage/commands/model_files.h"
#include "stage/commands/model_views.h"

namespace Stage {

namespace {

constexpr Command kCommands[] = {
    {"save", "write tools of a scene as a model", modelSaveCommand},
    {"load", "create the tools of a model, in a new scene or in a saved one", modelLoadCommand},
    {"list", "list what can be created: kinds of tools, and the models of the PRM folders",
     modelListCommand},
    {"show", "print a model or a profile as text, or report what is wrong with it",
     modelShowCommand},
};

} // namespace

ExitCode modelCommand(const std::vector<std::string>& words) {
    return runCommand("model ",
                      "Models hold tools and their objects, to be used again in any scene.",
                      kCommands, words);
}

} // namespace Stage
