#pragma once

#include "unidevice/sdk/driver.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace UniDevice {

/// The built-in driver. Devices that need polling and have no driver of their own join it by the
/// name "dummydriver".
class DummyDriver : public Driver {
public:
    static constexpr const char* kName = "dummydriver";

    DummyDriver();
    ~DummyDriver() override;

    void update() override;
    std::int32_t prepareDetection() override;
    Control* detectControl(const std::vector<Control*>* excluded) override;
    bool addDevice(Device* device) override;
    bool removeDevice(Device* device) override;
    Device* device(std::int32_t index) override;
    std::int32_t deviceCount() override;
    bool activate() override;
    bool deactivate() override;

    /// Polls the devices of `last` after all others, in this order, until a device joins.
    void pollLast(const std::vector<Device*>& last);
    /// Returns true until a device joins after pollLast().
    [[nodiscard]] bool isOrdered() const { return isOrdered_; }

    std::deque<Device*> devices; ///< not owned

private:
    template <class Call>
    bool callDevice(Device& device, const char* operation, const Call& call);
    bool callAll(const char* operation, bool (Device::*act)(std::int32_t));

    bool isOrdered_ = false;
    std::size_t lastPlace_ = 0;         // index of the device that left last
    std::vector<const Device*> failed_; // those that threw since the last activation
};

} // namespace UniDevice
