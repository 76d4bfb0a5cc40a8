// What drivers and devices need while they are called one after the other: each may come or go
// during a call.
#pragma once

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/control_target.h"
#include "unidevice/sdk/device.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

namespace UniDevice {

/// Calls `visit` for each entry of `list` that is still there when its turn comes. One that joins
/// meanwhile is left for the next time.
template <class List, class Visit>
void forEachPresent(const List& list, Visit visit) {
    const std::vector<typename List::value_type> entries(list.begin(), list.end());
    std::size_t place = 0; // of the entry, as long as nothing came or went
    for (const auto entry : entries) {
        if (place >= list.size() || list[place] != entry) {
            const auto found = std::find(list.begin(), list.end(), entry);
            if (found == list.end())
                continue;
            place = static_cast<std::size_t>(found - list.begin());
        }
        visit(*entry);
        ++place;
    }
}

/// Returns true if `entry` is in `list`.
template <class List>
bool isPresent(const List& list, const std::remove_pointer_t<typename List::value_type>* entry) {
    return std::find(list.begin(), list.end(), entry) != list.end();
}

/// Names `device`, which threw, for the log; it may be gone.
template <class List>
std::string describePresent(const List& devices, const Device& device) {
    return isPresent(devices, &device) ? "The device " + device.name
                                       : "A device that ended meanwhile";
}

/// The controls that moved in a detection. One that ends leaves the list.
class MovedControls final : public ControlTarget {
public:
    MovedControls() = default;
    MovedControls(const MovedControls&) = delete;
    MovedControls& operator=(const MovedControls&) = delete;
    ~MovedControls() {
        for (Control* control : controls_)
            control->removeTarget(this);
    }

    void add(Control* controlOrNull) {
        if (controlOrNull == nullptr)
            return;
        controls_.push_back(controlOrNull);
        controlOrNull->targets.push_back(this);
    }
    [[nodiscard]] Control* getMost() const { return Control::mostMoved(controls_); }

    void controlRemoved(Control* control) override {
        controls_.erase(std::remove(controls_.begin(), controls_.end(), control), controls_.end());
    }

private:
    std::vector<Control*> controls_; // not owned
};

} // namespace UniDevice
