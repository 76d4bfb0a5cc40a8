#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// One control of a CoreDevice.
struct CoreControl {
    std::string type;          ///< its identifier within the device, as a binding names it
    std::int32_t index = 0;    ///< the second identifier within the device
    std::string description;   ///< for the user
    std::int32_t kindMask = 0; ///< bits of UniDevice::ControlKind
    double value = 0.0;        ///< what the device held when it was polled last
};

/// A source of live input, as CoreInputs::list() returns it.
struct CoreDevice {
    std::string name;                  ///< as a binding names it
    std::int32_t index = 0;            ///< distinguishes devices of one name; 0 for the first
    std::string driver;                ///< the name of the driver that polls it; "" for none
    bool isTool = false;               ///< a placed tool that offers values of its own
    bool isBuiltIn = false;            ///< the core's own: the keyboard, or what is made of it
    std::vector<CoreControl> controls; ///< those that are known now: a device may learn of more
};

/// A driver, or a driver library without one, as CoreInputs::listDrivers() returns it.
struct CoreDriver {
    std::string name;    ///< "" for a library that was refused, or has no driver of its own
    std::string library; ///< path of its file; "" for the core's own driver
    std::string fault;   ///< what is wrong with it now, in English; "" if it works
};

/// The input devices: those of the driver libraries, the core's own keyboard and what is made of
/// it, and the tools that offer values to other tools.
///
/// getInputs() in core_extensions.h returns it. The core owns it. All calls come on the host's
/// thread. A later version adds operations at the end.
///
/// A display of live values outside of takes:
/// 1. setListening(true).
/// 2. update(), then list(), as often as the display is drawn.
/// 3. setListening(false).
/// During a take or a resimulation the core does steps 1 and 3 itself and polls once per frame;
/// list() returns the values then too.
class CoreInputs {
public:
    static constexpr std::int32_t kVersion = 1;

    virtual std::int32_t getVersion() = 0;
    /// Returns all devices in the order in which bindings look for their controls. Polls nothing.
    virtual std::vector<CoreDevice> list() = 0;
    /// Starts or ends listening outside of a take. The end of a take ends listening too; start it
    /// again after that. Returns 0, or the code of "ALREADYRECORDING" during a take, where nothing
    /// changes, or of "INPUT_INACTIVE", a warning, if a device can't start or end it; the others
    /// do.
    [[nodiscard]] virtual std::int32_t setListening(bool isListening) = 0;
    /// Polls all devices, without waiting. Returns 0, or the code of "ALREADYRECORDING" during a
    /// take, which polls them itself.
    [[nodiscard]] virtual std::int32_t update() = 0;
    /// Returns all drivers in the order in which they are polled, then each driver library that has
    /// none of its own, then each file of the drivers' folder that was refused. What is wrong with
    /// a driver is what it told last: it may learn of a fault, or overcome it, at any poll, and
    /// when listening or a take begins.
    virtual std::vector<CoreDriver> listDrivers() = 0;

protected:
    ~CoreInputs() = default;
};

} // namespace MVR
