#include "plugins/model/model_place.h"

#include "core/base/sdk/log.h"
#include "plugins/model/elements/tool_name.h"
#include "plugins/model/elements/tool_type.h"

#include <algorithm>
#include <utility>

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

ModelPlace::~ModelPlace() {
    if (faults_->getPlace() == this)
        faults_->setPlace(nullptr, "");
}

void ModelPlace::setTool(const Tag& tool) {
    tool_ = &tool;
    isMissingTold_ = false;
    listen("");
}

void ModelPlace::log(const std::string& element, const std::string& fault,
                     std::int32_t code) const {
    add(element, fault, code, false);
}

void ModelPlace::logMissing(const std::string& element, const std::string& fault,
                            std::int32_t code) {
    add(element, fault, code, !isMissingTold_);
    isMissingTold_ = true;
}

void ModelPlace::listen(const std::string& element) const {
    faults_->setPlace(this, element);
}

CoreFault ModelPlace::describe() const {
    CoreFault fault;
    fault.model = shown(nameOf(*outermost_));
    if (!folder_->empty())
        fault.model += " in " + shown(*folder_);
    fault.tool = shown(nameOf(*tool_));
    return fault;
}

void ModelPlace::add(const std::string& element, const std::string& text, std::int32_t code,
                     bool isToolMissing) const {
    CoreFault fault = describe();
    fault.element = shown(element);
    fault.text = shown(text);
    fault.code = code;
    fault.isToolMissing = isToolMissing;
    Log(Log::Warning).write(toText(fault));
    faults_->add(std::move(fault));
}

} // namespace MVR
