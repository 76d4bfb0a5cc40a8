#include "stage/commands/tools.h"

#include "core/contract/catalogue_words.h"
#include "platform/sdk/files.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/commands/scene_opening.h"
#include "stage/host/session.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace Stage {

namespace {

const std::vector<ExitCode> kCodes = {ExitCode::Ok, ExitCode::Usage, ExitCode::CoreOrToolMissing,
                                      ExitCode::OutputNotWritten};

std::string help() {
    return "usage: mirvane-stage tools [OPTIONS]\n\n"
           "Lists the tools of the tool libraries: name, version, what it does, category, author,\n"
           "library. The error stream reports each library that the core refuses.\n\n" +
           describe(withCommonOptions({})) + "\nexit codes\n" + describe(kCodes);
}

void print(const MVR::Tag& tool) {
    namespace Word = MVR::CatalogueWord;
    std::string categories;
    for (std::int32_t i = 0; i < tool.childCount(Word::kCategory); ++i)
        categories += (i > 0 ? ";" : "") + tool.child(Word::kCategory, i).value();
    std::string text = tool.child(Word::kName).value() + " " + tool.child(Word::kVersion).value() +
                       "\n  " + tool.child(Word::kDescription).value() + "\n  category " +
                       categories;
    if (const std::string& author = tool.child(Word::kAuthor).value(); !author.empty())
        text += ", by " + author;
    std::printf("%s\n  %s\n", text.c_str(),
                MVR::Platform::foldPath(tool.child(Word::kLibrary).value()).c_str());
}

} // namespace

ExitCode toolsCommand(const std::vector<std::string>& words) {
    Session session;
    if (const auto code = openSession(words, help(), session))
        return *code;
    namespace Word = MVR::CatalogueWord;
    const MVR::Tag catalogue = session.getModels().getCatalogue();
    bool isEmpty = true;
    for (std::int32_t i = 0; i < catalogue.childCount(); ++i) {
        const MVR::Tag& each = catalogue.child(i);
        if (each.hasName(Word::kRefused)) {
            complain(MVR::Platform::foldPath(each.child(Word::kFile).value()) + ": " +
                     each.child(Word::kText).value());
        } else if (each.childCount(Word::kType) > 0) {
            print(each);
            isEmpty = false;
        }
    }
    if (isEmpty)
        return fail(ExitCode::CoreOrToolMissing, "no tools in the folder of tools (--plugins)");
    return ExitCode::Ok;
}

} // namespace Stage
