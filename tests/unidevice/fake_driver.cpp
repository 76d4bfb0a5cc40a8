// A driver library; FAKE_VERSION and FAKE_LOAD choose its variant.
#include "core/base/sdk/export.h"
#include "core/base/sdk/log.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"
#include "unidevice/sdk/driver_faults.h"
#include "unidevice/sdk/driver_load_info.h"

namespace {

using namespace UniDevice;

// Its one control shows what the library was told. The library's fault is how often it was polled,
// up to the third time.
class FakeDevice : public Device {
public:
    explicit FakeDevice(const DriverLoadInfo& info) : Device(true), told_(this, infinite, 0.1) {
        name = "Fake";
        told_.type = "told";
        told_.value = static_cast<double>(info.version + info.moduleHandle + info.hostWindow);
    }
    std::int32_t controlCount() const override { return 1; }
    Control* control(std::int32_t index) override { return index == 0 ? &told_ : nullptr; }
    bool update(std::int32_t) override { return true; }
    bool prepareDetection() override { return false; }
    Control* detectControl(const std::vector<Control*>*, void*) override { return nullptr; }
    void resetControls() override {}

private:
    Control told_;
};

class FakeDriver : public Driver {
public:
    explicit FakeDriver(DriverFaults& faults) : Driver("fake"), faults_(faults) {}
    void update() override {
        ++updates_;
        faults_.setFault(this, updates_ < 3 ? "polled " + std::to_string(updates_) : "");
    }
    std::int32_t prepareDetection() override { return 0; }
    Control* detectControl(const std::vector<Control*>*) override { return nullptr; }
    bool addDevice(Device*) override { return true; }
    bool removeDevice(Device*) override { return true; }
    Device* device(std::int32_t) override { return nullptr; }
    std::int32_t deviceCount() override { return 0; }

private:
    DriverFaults& faults_;
    int updates_ = 0;
};

} // namespace

#if FAKE_VERSION
MVR_EXPORT std::int32_t getVersion() {
    return FAKE_VERSION;
}
#endif

#if FAKE_LOAD
MVR_EXPORT void loadDevices(DeviceHandler* handler, const DriverLoadInfo* info) {
    DeviceHandler::adopt(handler);
    MVR::Log::adopt(info->log);
    MVR::Log(MVR::Log::Notice).write("fake driver speaking");
    auto* driver = new FakeDriver(*info->faults);
    info->faults->setFault(nullptr, "half of it is missing");
    (new FakeDevice(*info))->setDriver(driver);
}
#endif
