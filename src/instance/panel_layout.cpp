#include "instance/panel_layout.h"

#include "core/base/sdk/log.h"

#include <utility>

namespace MVR {

namespace {

constexpr std::int32_t kControlHeight = 20; // pixels, of a control that the layout doesn't stretch

const char* word(bool value) {
    return value ? "true" : "false";
}

bool isMissing(const void* variable, const std::string& name) {
    if (variable == nullptr)
        Log(Log::Error).write("A control without a variable is left out", name, Log::OwnLevel);
    return variable == nullptr;
}

Tag controlSize() {
    Tag size = Tag::element("size");
    size.addChild(Tag::element("y", kControlHeight));
    return size;
}

} // namespace

void PanelLayout::begin() {
    end();
    layout_ = Tag::element("verticalscroll");
    layout_.addChild(Tag::element("lockheight"));
    Tag& border = layout_.addChild(Tag::element("body")).addChild(Tag::element("border"));
    Tag& space = border.addChild(Tag::element("space"));
    space.addChild(Tag::element("left", 16));
    space.addChild(Tag::element("top", 20));
    space.addChild(Tag::element("right", 5));
    space.addChild(Tag::element("bottom", 5));
    border.addChild(Tag::element("style", "none"));
    Tag& list = border.addChild(Tag::element("body")).addChild(Tag::element("list"));
    openBodies_.push_back(&list.addChild(Tag::element("body")));
}

void PanelLayout::beginGroup(const std::string& name, const std::string& tooltip) {
    if (openBodies_.empty())
        return;
    Tag& group = openBodies_.back()->addChild(Tag::element("group"));
    group.addChild(Tag::element("name", name));
    Tag& list = group.addChild(Tag::element("body")).addChild(Tag::element("list"));
    Tag& body = list.addChild(Tag::element("body"));
    group.addChild(Tag::element("tooltip", tooltip));
    openBodies_.push_back(&body);
}

void PanelLayout::endGroup() {
    if (!openBodies_.empty())
        openBodies_.pop_back();
}

void PanelLayout::end() {
    layout_.clear();
    openBodies_.clear();
    bindings_.clear();
}

std::int32_t PanelLayout::append(Tag control, const std::string& tooltip, void* variable,
                                 CInterface::Callback* callback) {
    control.addChild(Tag::element("tooltip", tooltip));
    openBodies_.back()->addChild(std::move(control));
    bindings_.push_back({nextId_, variable, callback});
    return nextId_++;
}

template <class Number>
std::int32_t PanelLayout::addNumber(const char* keyword, const std::string& name,
                                    const std::string& tooltip, Number* variable, Number minimum,
                                    Number maximum, Number step, std::int32_t triggerLength,
                                    CInterface::Callback* callback) {
    if (openBodies_.empty())
        return kNoId;
    if (isMissing(variable, name))
        return kNoId;
    Tag control = Tag::element(keyword);
    control.addChild(Tag::element("name", name));
    control.addChild(Tag::element("id", nextId_));
    control.addChild(Tag::element("minvalue", minimum));
    control.addChild(Tag::element("maxvalue", maximum));
    control.addChild(Tag::element("stepsize", step));
    control.addChild(Tag::element("triggerlength", triggerLength));
    control.addChild(Tag::element("value", *variable));
    control.addChild(Tag::element("resetvalue", *variable));
    return append(std::move(control), tooltip, variable, callback);
}

std::int32_t PanelLayout::addSpinnerInt(const std::string& name, const std::string& tooltip,
                                        std::int32_t* variable, std::int32_t minimum,
                                        std::int32_t maximum, std::int32_t step,
                                        std::int32_t triggerLength,
                                        CInterface::Callback* callback) {
    return addNumber("spinner_int", name, tooltip, variable, minimum, maximum, step, triggerLength,
                     callback);
}

std::int32_t PanelLayout::addSpinner(const std::string& name, const std::string& tooltip,
                                     double* variable, double minimum, double maximum, double step,
                                     std::int32_t triggerLength, CInterface::Callback* callback) {
    return addNumber("spinner", name, tooltip, variable, minimum, maximum, step, triggerLength,
                     callback);
}

std::int32_t PanelLayout::addCheck(const std::string& name, const std::string& tooltip,
                                   bool* variable, CInterface::Callback* callback) {
    if (openBodies_.empty())
        return kNoId;
    Tag control = Tag::element("check");
    control.addChild(Tag::element("id", nextId_));
    control.addChild(controlSize());
    control.addChild(Tag::element("name", name));
    if (variable != nullptr)
        control.addChild(Tag::element("value", word(*variable)));
    return append(std::move(control), tooltip, variable, callback);
}

std::int32_t PanelLayout::addText(const std::string& name, const std::string& tooltip,
                                  std::string* variable, CInterface::Callback* callback) {
    if (openBodies_.empty())
        return kNoId;
    Tag control = Tag::element("text");
    control.addChild(Tag::element("name", name));
    control.addChild(Tag::element("id", nextId_));
    if (variable != nullptr)
        control.addChild(Tag::element("value", *variable));
    return append(std::move(control), tooltip, variable, callback);
}

std::int32_t PanelLayout::addCombo(const std::string& name, const std::string& tooltip,
                                   const std::vector<std::string>& choices, std::string* variable,
                                   CInterface::Callback* callback) {
    if (openBodies_.empty())
        return kNoId;
    Tag control = Tag::element("combo");
    control.addChild(Tag::element("id", nextId_));
    control.addChild(controlSize());
    control.addChild(Tag::element("name", name));
    if (variable != nullptr)
        control.addChild(Tag::element("value", *variable));
    Tag& data = control.addChild(Tag::element("data"));
    for (const std::string& choice : choices)
        data.addChild(Tag::element("entry", choice));
    return append(std::move(control), tooltip, variable, callback);
}

std::int32_t PanelLayout::addButton(const std::string& name, const std::string& tooltip,
                                    CInterface::Callback* callback) {
    if (openBodies_.empty())
        return kNoId;
    Tag control = Tag::element("button");
    control.addChild(Tag::element("id", nextId_));
    control.addChild(controlSize());
    control.addChild(Tag::element("name", name));
    return append(std::move(control), tooltip, nullptr, callback);
}

} // namespace MVR
