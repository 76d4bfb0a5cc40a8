#pragma once

#include "machine.h"
#include "osc_config.h"
#include "osc_reader.h"

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Each of these ends an update early; what is left waits for the next one.
constexpr int kMaxDatagramsPerUpdate = 1024;
constexpr std::size_t kMaxBytesPerUpdate = 256 * 1024;
/// Controls in all. The last of them come into being for saved bindings only, so that a flood of
/// addresses can't keep a binding out.
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

/// The device "OSC": what arrives on one UDP port.
class OscDevice : public UniDevice::Device {
public:
    /// Opens the port. If that fails, a line tells why and the device has no controls but those
    /// that bindings name.
    explicit OscDevice(OscConfig config);

    [[nodiscard]] std::int32_t controlCount() const override;
    [[nodiscard]] UniDevice::Control* control(std::int32_t index) override;

    /// Takes in what has arrived; of several values for one control the newest stays. False while
    /// the port isn't open.
    bool update(std::int32_t reserved) override;

    /// Makes the control that the binding names, if there is none yet.
    UniDevice::Control* findControl(const MVR::Tag& tag) override;

    bool prepareDetection() override;

    /// The control that moved most. A move counts from the last poll that found it, so that a slow
    /// one is found too.
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>* excluded,
                                      void* context) override;
    void resetControls() override;

    /// Tries the port again if it is closed. Each control has the value that it last received, also
    /// if it was reset since. Always true: a take goes on without this device.
    bool activate(std::int32_t reserved) override;

    /// The port that is listened on; 0 if none is.
    [[nodiscard]] std::int32_t port() const { return socket_.port(); }

private:
    void open();
    void drain();
    void store(const OscValue& value);
    OscControl* find(std::string_view address, std::int32_t argument) const;
    OscControl* findOrMake(std::string_view address, std::int32_t argument, std::int32_t limit);

    OscConfig config_;
    UdpSocket socket_;
    std::vector<std::unique_ptr<OscControl>> controls_; ///< in order of creation
    std::map<std::string, std::vector<OscControl*>, std::less<>> byAddress_; ///< by argument
    std::vector<OscValue> values_;     ///< of the packet that is being read
    std::unique_ptr<char[]> datagram_; ///< room for the largest
    std::uint64_t updateNumber_ = 0;
    bool fullLogged_ = false;
};
