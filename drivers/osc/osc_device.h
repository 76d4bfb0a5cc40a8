#pragma once

#include "machine.h"
#include "osc_config.h"
#include "osc_reader.h"

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Each of these limits ends an update early; the rest waits for the next one.
constexpr int kMaxDatagramsPerUpdate = 1024;
constexpr std::size_t kMaxBytesPerUpdate = 256 * 1024;
/// All controls. The last of them are created for saved bindings only, so that a flood of addresses
/// can't keep a binding out.
constexpr std::int32_t kMaxOscControls = 4096;
constexpr std::int32_t kControlsForBindings = 512;

/// A numeric argument of one address. The value stays until the next message.
class OscControl : public UniDevice::Control {
public:
    OscControl(UniDevice::Device* device, std::string_view address, std::int32_t argument);

    double received = 0.0;        ///< the latest value; a reset doesn't touch it
    double detectionStart = 0.0;  ///< where the move began that a detection looks for
    std::uint64_t lastUpdate = 0; ///< number of the update that last changed the value
};

/// The device "OSC": the values that arrive on one UDP port.
class OscDevice : public UniDevice::Device {
public:
    /// Tells what doesn't work now; "" for nothing.
    using TellFault = std::function<void(const std::string& fault)>;

    /// Opens the port. If that fails, `tellFault` gets the reason, and the device has only the
    /// controls that bindings name.
    OscDevice(OscConfig config, TellFault tellFault);

    [[nodiscard]] std::int32_t controlCount() const override;
    [[nodiscard]] UniDevice::Control* control(std::int32_t index) override;

    /// Reads what has arrived; of several values for one control the newest counts. Returns false
    /// while the port isn't open.
    bool update(std::int32_t reserved) override;

    /// Creates the control that the binding names, if there is none yet.
    UniDevice::Control* findControl(const MVR::Tag& tag) override;

    bool prepareDetection() override;

    /// Returns the control that moved most. A move counts from the last poll that found it, so slow
    /// moves are found too.
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>* excluded,
                                      void* context) override;
    void resetControls() override;

    /// Tries the port again if it is closed. Gives each control the value that it last received,
    /// even if it was reset since. Always returns true: a take runs without this device too.
    bool activate(std::int32_t reserved) override;

    /// Returns the port that the device listens on, or 0 if none.
    [[nodiscard]] std::int32_t port() const { return socket_.port(); }

private:
    void open();
    void tellFaults() const;
    void drain();
    void store(const OscValue& value);
    OscControl* find(std::string_view address, std::int32_t argument) const;
    OscControl* findOrMake(std::string_view address, std::int32_t argument, std::int32_t limit);

    OscConfig config_;
    TellFault tellFault_;
    std::string portFault_; ///< why the port isn't open; "" while it is
    std::string fullFault_; ///< which control had no room first; "" for none
    UdpSocket socket_;
    std::vector<std::unique_ptr<OscControl>> controls_; ///< in order of creation
    std::map<std::string, std::vector<OscControl*>, std::less<>> byAddress_; ///< by argument
    std::vector<OscValue> values_;     ///< of the packet that is being read
    std::unique_ptr<char[]> datagram_; ///< room for the largest
    std::uint64_t updateNumber_ = 0;
};
