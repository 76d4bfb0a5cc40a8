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

    std::deque<Device*> devices; ///< not owned

private:
    std::size_t lastPlace_ = 0; // index of the device that left last
};

} // namespace UniDevice
