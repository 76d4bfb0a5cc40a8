#include "osc_device.h"

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"

#include <cmath>
#include <utility>

namespace {

constexpr std::size_t kDatagramBytes = 65536; // more than UDP carries
constexpr double kThreshold = 0.1;

} // namespace

OscControl::OscControl(UniDevice::Device* owner, std::string_view address, std::int32_t argument)
    : Control(owner, UniDevice::finite | UniDevice::infinite, kThreshold) {
    type = address;
    index = argument;
    description = type + " " + std::to_string(argument);
}

OscDevice::OscDevice(OscConfig config, TellFault tellFault)
    : Device(true), config_(std::move(config)), tellFault_(std::move(tellFault)),
      datagram_(new char[kDatagramBytes]) {
    name = "OSC";
    open();
}

void OscDevice::open() {
    const std::string place = config_.address + " port " + std::to_string(config_.port);
    std::string error;
    if (socket_.open(config_.address, config_.port, error)) {
        portFault_.clear();
        MVR::Log(MVR::Log::Notice).write("OSC: listening on " + place);
    } else {
        portFault_ = "unable to listen on " + place + ": " + error;
    }
    tellFaults();
}

void OscDevice::tellFaults() const {
    std::string all = config_.fault;
    for (const std::string* fault : {&portFault_, &fullFault_})
        if (!fault->empty())
            all += (all.empty() ? "" : "; ") + *fault;
    tellFault_(all);
}

std::int32_t OscDevice::controlCount() const {
    return static_cast<std::int32_t>(controls_.size());
}

UniDevice::Control* OscDevice::control(std::int32_t index) {
    return index >= 0 && index < controlCount() ? controls_[index].get() : nullptr;
}

bool OscDevice::update(std::int32_t) {
    drain();
    return socket_.isOpen();
}

void OscDevice::drain() {
    ++updateNumber_;
    std::size_t bytes = 0;
    for (int i = 0; i < kMaxDatagramsPerUpdate && bytes < kMaxBytesPerUpdate; ++i) {
        const std::ptrdiff_t size = socket_.receive(datagram_.get(), kDatagramBytes);
        if (size < 0)
            return;
        bytes += static_cast<std::size_t>(size);
        values_.clear();
        if (readOscPacket(datagram_.get(), static_cast<std::size_t>(size), values_))
            for (const OscValue& value : values_)
                store(value);
    }
}

void OscDevice::store(const OscValue& arrived) {
    OscControl* control =
        findOrMake(arrived.address, arrived.index, kMaxOscControls - kControlsForBindings);
    if (!control)
        return;
    if (control->lastUpdate != updateNumber_) {
        control->lastUpdate = updateNumber_;
        control->previousValue = control->value;
    }
    control->value = arrived.value;
    control->received = arrived.value;
    ++control->arrivals;
}

OscControl* OscDevice::find(std::string_view address, std::int32_t argument) const {
    const auto known = byAddress_.find(address);
    const std::size_t place = static_cast<std::size_t>(argument);
    return known != byAddress_.end() && place < known->second.size() ? known->second[place]
                                                                     : nullptr;
}

OscControl* OscDevice::findOrMake(std::string_view address, std::int32_t argument,
                                  std::int32_t limit) {
    if (OscControl* existing = find(address, argument))
        return existing;
    if (controlCount() >= limit) {
        if (fullFault_.empty()) {
            fullFault_ = "too many controls, dropped from here on: " + std::string(address);
            tellFaults();
        }
        return nullptr;
    }
    std::vector<OscControl*>& arguments = byAddress_[std::string(address)];
    const std::size_t place = static_cast<std::size_t>(argument);
    if (arguments.size() <= place)
        arguments.resize(place + 1);
    controls_.push_back(std::make_unique<OscControl>(this, address, argument));
    return arguments[place] = controls_.back().get();
}

UniDevice::Control* OscDevice::findControl(const MVR::Tag& tag) {
    const std::string index = tag.attribute("index");
    if (index.empty()) { // any argument will do
        if (UniDevice::Control* existing = Device::findControl(tag))
            return existing;
    }
    const std::string address = tag.attribute("type");
    std::int32_t argument = 0;
    MVR::Tag::textNode(index).as(argument);
    if (!matches(tag) || !isOscAddress(address) || argument < 0 || argument >= kMaxOscArguments)
        return nullptr;
    // A binding that leaves the device open may mean any, so no control is created for it.
    return tag.attribute("device") == name ? findOrMake(address, argument, kMaxOscControls)
                                           : find(address, argument);
}

bool OscDevice::prepareDetection() {
    drain();
    for (const auto& control : controls_) {
        control->previousValue = control->value;
        control->detectionStart = control->received;
    }
    return socket_.isOpen();
}

UniDevice::Control* OscDevice::detectControl(const std::vector<UniDevice::Control*>* excluded,
                                             void*) {
    drain();
    // Code that compares devices reads the two values, so they show the whole move.
    for (const auto& control : controls_) {
        control->value = control->received;
        control->previousValue = control->detectionStart;
        if (control->change() > control->threshold)
            control->detectionStart = control->received;
    }
    return mostMovedControl(excluded);
}

void OscDevice::resetControls() {
    for (const auto& control : controls_)
        control->resetValues();
}

bool OscDevice::activate(std::int32_t) {
    if (!socket_.isOpen())
        open();
    drain();
    for (const auto& control : controls_) {
        control->value = control->received;
        control->previousValue = control->received;
    }
    return true;
}
