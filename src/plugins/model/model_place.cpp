#include "plugins/model/model_place.h"

#include "core/base/sdk/log.h"

#include <algorithm>

namespace MVR {
namespace {

constexpr std::size_t kMostLetters = 120; // of one name or text in a line

/// On one line, and no longer than a reader would read.
std::string shown(std::string text) {
    if (text.empty())
        return "(unnamed)";
    if (text.size() > kMostLetters)
        text = text.substr(0, kMostLetters) + "...";
    std::replace_if(
        text.begin(), text.end(), [](unsigned char each) { return each < ' '; }, ' ');
    return text;
}

const std::string& nameOf(const Tag& tool) {
    const std::string& name = tool.child("name").value();
    return name.empty() ? tool.child("type").value() : name;
}

} // namespace

ModelPlace::ModelPlace(const Tag& outermost, const std::string& folder)
    : model_(shown(nameOf(outermost))), tool_(nameOf(outermost)) {
    if (!folder.empty())
        model_ += " in " + shown(folder);
}

void ModelPlace::log(const std::string& element, const std::string& fault) const {
    Log(Log::Warning)
        .write("Model " + model_ + ", tool " + shown(tool_) + ", " + shown(element), shown(fault),
               Log::OwnLevel);
}

} // namespace MVR
