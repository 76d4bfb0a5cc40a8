#include "stage/commands/tools.h"

#include "stage/commands/commands.h"
#include "stage/host/core_library.h"
#include "stage/host/tool_catalog.h"

#include <cstdio>
#include <string>

namespace Stage {

namespace {

const std::vector<ExitCode> kCodes = {ExitCode::Ok, ExitCode::Usage, ExitCode::CoreOrToolMissing,
                                      ExitCode::OutputNotWritten};

std::string help() {
    return "usage: mirvane-stage tools [OPTIONS]\n\n"
           "Lists the tools of the tool libraries: name, version, what it does, category, author,\n"
           "library. The error stream reports each library that the core would refuse.\n\n" +
           describe(withCommonOptions({})) + "\nexit codes\n" + describe(kCodes);
}

void print(const ToolEntry& tool) {
    std::printf("%s %s\n  %s\n  category %s", tool.name.c_str(), tool.version.c_str(),
                tool.description.c_str(), tool.category.c_str());
    if (!tool.author.empty())
        std::printf(", by %s", tool.author.c_str());
    std::printf("\n  %s\n", tool.library.c_str());
}

} // namespace

ExitCode toolsCommand(const std::vector<std::string>& words) {
    InstallValues values;
    if (const auto code = readCommand(words, withCommonOptions({}), help(), values))
        return *code;
    const std::string core = findCore(values.core);
    if (core.empty() && values.plugins.empty()) {
        complain("there is no core library; name it with --core, or the folder of the tools with "
                 "--plugins");
        return ExitCode::CoreOrToolMissing;
    }
    const ToolCatalog catalog = listTools(toolFolder(values, core));
    for (const ToolEntry& tool : catalog.tools)
        print(tool);
    for (const std::string& fault : catalog.faults)
        complain(fault);
    if (catalog.tools.empty()) {
        complain("no tools in " + toolFolder(values, core));
        return ExitCode::CoreOrToolMissing;
    }
    return ExitCode::Ok;
}

} // namespace Stage
