#include "unidevice/sdk/lookup_index.h"

#include "data/sdk/tag.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"

namespace UniDevice {

namespace {

constexpr std::int32_t kScansBeforeIndex = 8; // a list that changes all the time isn't worth it

std::string keyOf(const std::string& type, const std::string& index) {
    return type + '\n' + index;
}

} // namespace

bool LookupIndex::isDue(std::size_t size) {
    if (size != size_) {
        places_.clear();
        size_ = size;
        scans_ = 0;
    }
    return scans_ <= kScansBeforeIndex && ++scans_ > kScansBeforeIndex;
}

std::size_t LookupIndex::find(const std::string& key) const {
    const auto found = places_.find(key);
    return found != places_.end() ? found->second : kNone;
}

std::size_t LookupIndex::findDevice(const std::vector<Device*>& devices, const std::string& name) {
    if (isDue(devices.size()))
        for (std::size_t i = 0; i < devices.size(); ++i)
            places_.emplace(devices[i]->name, i); // the first of equals
    const std::size_t place = find(name);
    return place < devices.size() && devices[place]->name == name ? place : kNone;
}

Control* LookupIndex::findControl(Device& device, std::int32_t count, const MVR::Tag& tag) {
    if (isDue(static_cast<std::size_t>(count))) {
        for (std::int32_t i = 0; i < count; ++i) {
            if (const Control* const control = device.control(i)) {
                places_.emplace(keyOf(control->type, std::to_string(control->index)), i);
                places_.emplace(keyOf(control->type, ""), i); // a tag may leave the index open
            }
        }
    }
    const std::size_t place =
        find(keyOf(tag.attribute(BindingWord::kType), tag.attribute(BindingWord::kIndex)));
    if (place == kNone)
        return nullptr;
    Control* const control = device.control(static_cast<std::int32_t>(place));
    return control != nullptr && control->matches(tag) ? control : nullptr;
}

} // namespace UniDevice
