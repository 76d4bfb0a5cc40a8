#pragma once

#include "core/util/sdk/dynamic_object.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {
class Tag;
}

namespace UniDevice {

class Control;
class DeviceHandler;
class Driver;

/// A source of live input: a named set of controls.
///
/// A device's life:
/// 1. Its driver creates it. The constructor puts it into the handler's list, or the device calls
///    `registerWith` later; `setDriver` gives it to the driver that polls it.
/// 2. `activate(0)` when a take begins.
/// 3. `update(0)` once per tick: the device writes new values into its controls.
/// 4. `deactivate(0)` when the take ends.
/// 5. `destroy()` when the host detaches; the destructor leaves the handler and the driver.
/// `update` may also come outside of a take, as may `prepareDetection`, `detectControl` and
/// `resetControls` while the user looks for a control, and what reads at any time. The core and the
/// driver call the virtual operations; what isn't virtual is the maker's to call, from the
/// constructor on. Host thread only.
///
/// The fields and the order of the virtual operations are shared with separately built libraries.
class Device : public MVR::Util::DynamicObject {
public:
    /// With `registerNow` the device joins the end of the handler's list at once. The caller sets
    /// name and index.
    explicit Device(bool registerNow);
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    /// Leaves the handler and the driver.
    ~Device() override;

    /// Makes `out` a `control` element that names this device.
    virtual void toTag(MVR::Tag& out) const;

    [[nodiscard]] virtual std::int32_t controlCount() const = 0;

    /// Returns the control at `index`, which the device owns, or null if `index` is out of range.
    [[nodiscard]] virtual Control* control(std::int32_t index) = 0;

    /// Reads new values into the controls; the argument is always 0. Never blocks. Returns false if
    /// the device failed; its controls then keep their values.
    virtual bool update(std::int32_t reserved) = 0;

    /// Returns the first control that `tag` names, or null. A device that creates controls on
    /// demand creates the control here.
    virtual Control* findControl(const MVR::Tag& tag);

    /// Starts a detection: changes count from now on. Returns false if the device does not
    /// participate.
    virtual bool prepareDetection() = 0;

    /// Returns the control that moved most since the last poll, by more than its threshold, or
    /// null. `excluded` lists controls to leave out, or is null; `context` is always null.
    virtual Control* detectControl(const std::vector<Control*>* excluded, void* context) = 0;

    /// Sets the previous and the current value of all controls to 0.
    virtual void resetControls() = 0;

    /// A take or a detection begins; the argument is always 0. Returns false if the device can't
    /// participate.
    virtual bool activate(std::int32_t reserved);

    /// The take or the detection ends. May be called without `activate`.
    virtual bool deactivate(std::int32_t reserved);

    /// Joins the list of `handler`, leaving a previous one; null means the handler of the process.
    /// A negative `position` appends; a position beyond the end leaves the device out of the list,
    /// with `handler` set.
    void registerWith(std::int32_t position, DeviceHandler* handler);

    /// Leaves the handler's list. Does nothing if not registered.
    void unregister();

    /// Joins `newDriver`, leaving a previous one. With null it only leaves.
    void setDriver(Driver* newDriver);

    /// Leaves the driver. Does nothing without one.
    void clearDriver();

    /// Returns the position in the handler's list, or -1.
    [[nodiscard]] std::int32_t handlerIndex() const;

    /// Returns true if `tag` names this device or leaves the device open.
    [[nodiscard]] bool matches(const MVR::Tag& tag) const;

    std::string name;
    std::int32_t deviceIndex = 0;     ///< tells devices of one name apart; 0 for the first
    DeviceHandler* handler = nullptr; ///< null when not registered
    Driver* driver = nullptr;         ///< null when it has none

protected:
    /// What most devices return from `detectControl`: the control that moved most, the first of
    /// equals, among those that moved by more than their threshold and aren't in `excluded`.
    [[nodiscard]] Control* mostMovedControl(const std::vector<Control*>* excluded);
};

} // namespace UniDevice
