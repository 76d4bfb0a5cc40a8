#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/control_target.h"
#include "unidevice/sdk/device.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace UniDevice {

/// A `trinary` control made of two others: the first pushes the value up, the second down.
class EmulatedTControl : public Control, public ControlTarget {
public:
    EmulatedTControl(Control* positive, Control* negative, Device* device, std::int32_t kindMask,
                     double threshold);

    /// Leaves both sources.
    ~EmulatedTControl() override;

    /// Writes the plain form, with the two sources as children that carry their `te_direction`.
    void toTag(MVR::Tag& out) const override;

    /// Returns true if `tag` names this device and both sources, in either order.
    [[nodiscard]] bool matches(const MVR::Tag& tag) const override;

    /// Computed at each call. Returns 0 once a source is gone.
    [[nodiscard]] double getValue() const override;

    void controlRemoved(Control* control) override;

    Control* positive; ///< not owned; null once it is gone
    Control* negative; ///< not owned; null once it is gone
};

/// The built-in device "TrinaryEmulator", which keeps the emulated controls.
///
/// It is last of all devices and does not participate in detection. A saved binding to an emulated
/// control creates the control again on demand.
class EmulatedTrinaryDevice : public Device,
                              public MVR::Util::DynamicCreator<EmulatedTrinaryDevice> {
public:
    static constexpr const char* kName = "TrinaryEmulator";

    /// Registers, and joins the driver "dummydriver" if there is one.
    EmulatedTrinaryDevice();
    ~EmulatedTrinaryDevice() override;

    [[nodiscard]] std::int32_t controlCount() const override;
    [[nodiscard]] Control* control(std::int32_t index) override;
    bool update(std::int32_t reserved) override;
    Control* findControl(const MVR::Tag& tag) override;
    bool prepareDetection() override;
    Control* detectControl(const std::vector<Control*>* excluded, void* context) override;
    void resetControls() override;

    /// Returns the control of these two sources, created if there is none yet and kept until the
    /// device is destroyed. Returns null if either source is null.
    Control* createControl(Control* first, Control* second);

    /// How deeply saved bindings may nest emulated controls. The dialogs create one level.
    static constexpr std::int32_t kMaxNesting = 16;

    std::vector<std::unique_ptr<EmulatedTControl>> controls; ///< in order of creation

private:
    using Sources = std::pair<const Control*, const Control*>; // positive, negative
    struct SourcesHash {
        std::size_t operator()(const Sources& sources) const {
            const std::hash<const Control*> hash;
            return hash(sources.first) * 31 + hash(sources.second);
        }
    };

    [[nodiscard]] EmulatedTControl* findBySources(const Control* up, const Control* down) const;
    [[nodiscard]] EmulatedTControl* findUnlisted(const MVR::Tag& tag) const;

    // A source may have ended, and another be where it was: a find is checked.
    std::unordered_map<Sources, EmulatedTControl*, SourcesHash> bySources_;
    std::int32_t nesting_ = 0; ///< bindings that are being resolved, one inside the other
};

} // namespace UniDevice
