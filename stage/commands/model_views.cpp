#include "stage/commands/model_views.h"

#include "core/contract/catalogue_words.h"
#include "platform/sdk/files.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/commands/scene_opening.h"
#include "stage/host/session.h"
#include "stage/rig/model_text.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

namespace Stage {

namespace {

/// The most bytes of a file that is shown; the core loads no larger model.
constexpr std::uint64_t kMostShownBytes = std::uint64_t(256) << 20;

const std::vector<ExitCode> kListCodes = {ExitCode::Ok, ExitCode::Usage,
                                          ExitCode::CoreOrToolMissing, ExitCode::OutputNotWritten};
const std::vector<ExitCode> kShowCodes = {ExitCode::Ok, ExitCode::Usage, ExitCode::OutputNotWritten,
                                          ExitCode::BadFile};

std::string listHelp() {
    return "usage: mirvane-stage model list [OPTIONS]\n\n"
           "Lists what can be created, with version, category and file: first the kinds of tools, "
           "then\nthe models of the shared and the user's PRM folder.\n\n" +
           describe(withCommonOptions({})) + "\nexit codes\n" + describe(kListCodes);
}

std::vector<Option> showOptions() {
    return withCommonOptions(
        {{"FILE", nullptr, "a model (.prm), a profile or any other file of the same form"}});
}

std::string showHelp() {
    return "usage: mirvane-stage model show FILE\n\n"
           "Prints a model or a profile as text, compressed or not; packed elements are shown as\n"
           "trees. For a bad file it reports what is wrong, with line and column. Of the options\n"
           "that all commands share, only --help and --version change anything here.\n\n" +
           describe(showOptions()) + "\nexit codes\n" + describe(kShowCodes);
}

std::string join(const MVR::Tag& entry, const char* name) {
    std::string text;
    for (std::int32_t i = 0; i < entry.childCount(name); ++i)
        text += (text.empty() ? "" : ", ") + entry.child(name, i).value();
    return text;
}

void print(const MVR::Tag& entry) {
    namespace Word = MVR::CatalogueWord;
    std::string text = entry.child(Word::kName).value();
    if (const std::string& version = entry.child(Word::kVersion).value(); !version.empty())
        text += " " + version;
    if (const std::string& about = entry.child(Word::kAbout).value(); !about.empty())
        text += "\n  " + about;
    for (const char* name : {Word::kCategory, Word::kType, Word::kRequired, Word::kFile})
        if (const std::string words = join(entry, name); !words.empty())
            text +=
                std::string("\n  ") + name + " " +
                (std::string_view(name) == Word::kFile ? MVR::Platform::foldPath(words) : words);
    std::printf("%s\n", text.c_str());
}

} // namespace

ExitCode modelListCommand(const std::vector<std::string>& words) {
    Session session;
    if (const auto code = openSession(words, listHelp(), session))
        return *code;
    const MVR::Tag catalogue = session.getModels().getCatalogue();
    const std::int32_t count = catalogue.childCount(MVR::CatalogueWord::kEntry);
    for (std::int32_t i = 0; i < count; ++i)
        print(catalogue.child(MVR::CatalogueWord::kEntry, i));
    if (count == 0)
        return fail(ExitCode::CoreOrToolMissing, "there are neither tools nor models");
    return ExitCode::Ok;
}

ExitCode modelShowCommand(const std::vector<std::string>& words) {
    InstallValues values;
    std::string path;
    const auto take = [&path](const Argument& argument, std::string&) {
        path = argument.value;
        return true;
    };
    if (const auto code = readCommand(words, showOptions(), showHelp(), values, take))
        return *code;
    std::string bytes;
    if (!MVR::Platform::readFile(path, bytes, kMostShownBytes)) {
        return fail(ExitCode::BadFile,
                    "can't read " + path + ": " + MVR::Platform::lastFileError());
    }
    std::string text;
    std::string error;
    if (!toModelText(bytes, text, error))
        return fail(ExitCode::BadFile, path + ": " + error);
    std::fputs(text.c_str(), stdout);
    return ExitCode::Ok;
}

} // namespace Stage
