#include "plugins/model/model_place.h"

#include "core/base/sdk/log.h"
#include "core/services/fault_list.h"
#include "plugins/model/elements/tool_name.h"
#include "plugins/model/elements/tool_type.h"

#include <algorithm>

namespace MVR {
namespace {

constexpr std::size_t kMostLetters = 120; // of one name or text in a line

/// Returns the text on one line, and no longer than a reader would read.
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
    const std::string& name = NameElement::read(tool);
    return name.empty() ? TypeElement::read(tool) : name;
}

} // namespace

ModelPlace::ModelPlace(FaultList& faults, const Tag& outermost, const std::string& folder)
    : faults_(&faults), model_(shown(nameOf(outermost))), tool_(nameOf(outermost)) {
    if (!folder.empty())
        model_ += " in " + shown(folder);
}

void ModelPlace::setTool(const std::string& name) {
    tool_ = name;
    isMissingTold_ = false;
    listen("");
}

void ModelPlace::log(const std::string& element, const std::string& fault,
                     std::int32_t code) const {
    add({model_, shown(tool_), shown(element), shown(fault), code});
}

void ModelPlace::logMissing(const std::string& element, const std::string& fault,
                            std::int32_t code) {
    add({model_, shown(tool_), shown(element), shown(fault), code, !isMissingTold_});
    isMissingTold_ = true;
}

void ModelPlace::add(const CoreFault& fault) const {
    Log(Log::Warning).write(toText(fault));
    faults_->add(fault);
}

void ModelPlace::listen(const std::string& element) const {
    faults_->setPlace({model_, shown(tool_), element, "", 0});
}

} // namespace MVR
