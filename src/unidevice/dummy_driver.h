#pragma once

#include "unidevice/driver.h"

namespace UniDevice {

/// The built-in driver: whatever needs polling and has no driver of its own joins it by the name
/// "dummydriver".
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

    std::vector<Device*> devices; ///< not owned
};

} // namespace UniDevice
