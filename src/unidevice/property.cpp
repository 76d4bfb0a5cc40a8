#include "unidevice/sdk/property.h"

#include "data/sdk/tag.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control.h"

#include <utility>

namespace UniDevice {

namespace {

struct Parameter {
    const char* name;
    double Property::*field;
};

// In the order in which a file holds them.
constexpr Parameter kParameters[] = {
    {BindingWord::kMultiplier, &Property::multiplier},
    {BindingWord::kExponent, &Property::exponent},
    {BindingWord::kDeadzone, &Property::deadzone},
    {BindingWord::kOffset, &Property::offset},
};

} // namespace

Property* Property::Factory::create(const std::string& name, std::int32_t acceptedKinds) const {
    return new Property(name, acceptedKinds);
}

void Property::Listener::boundAnew(Control*) {}

Property::Property(std::string propertyName, std::int32_t kinds)
    : name(std::move(propertyName)), acceptedKinds(kinds) {}

void Property::controlRemoved(Control* removed) {
    if (removed == control)
        control = nullptr;
    for (Listener* listener : listeners)
        listener->bound = false;
}

double Property::getValue() const {
    return map(control ? control->getValue() : 0.0);
}

Property::~Property() {
    lend(nullptr);
}

std::int32_t Property::bind(Control* newControl) {
    lend(newControl);
    for (Listener* listener : listeners)
        listener->boundAnew(newControl);
    return control ? acceptedKinds & control->kindMask : kUnbound;
}

void Property::lend(Control* standIn) {
    if (control)
        control->removeTarget(this);
    control = standIn;
    if (control)
        control->targets.push_back(this);
}

void Property::readSettings(const MVR::Tag& tag) {
    for (const Parameter& parameter : kParameters)
        MVR::Tag::textNode(tag.child(parameter.name).value()).as(this->*parameter.field);
}

void Property::toTag(MVR::Tag& out, bool isExact) const {
    out = MVR::Tag::element(BindingWord::kProperty);
    out.attributeRef(BindingWord::kName) = name;
    for (const Parameter& parameter : kParameters) {
        out.addChild(isExact ? MVR::Tag::exactElement(parameter.name, this->*parameter.field)
                             : MVR::Tag::element(parameter.name, this->*parameter.field));
    }
}

} // namespace UniDevice
