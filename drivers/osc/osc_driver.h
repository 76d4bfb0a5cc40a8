#pragma once

#include "unidevice/sdk/driver.h"

/// Polls the one device "OSC".
class OscDriver : public UniDevice::Driver {
public:
    OscDriver() : Driver("OSC") {}
    ~OscDriver() override;

    void update() override;
    std::int32_t prepareDetection() override;
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>* excluded) override;
    bool addDevice(UniDevice::Device* device) override;
    bool removeDevice(UniDevice::Device* device) override;
    UniDevice::Device* device(std::int32_t index) override;
    std::int32_t deviceCount() override;
    bool activate() override;
    bool deactivate() override;

private:
    UniDevice::Device* device_ = nullptr; ///< the handler frees it
};
