// The raw input of a tool's takes, which a resimulation plays again.
#pragma once

#include "instance/instance_inputs.h"
#include "instance/temporary_control.h"
#include "recording/values/animated_variable.h"
#include "recording/values/take_source.h"

#include <functional>
#include <memory>
#include <vector>

namespace MVR {

class AdaptorInterface;

/// The values of the controls of a tool's properties, frame by frame.
///
/// 1. begin() when a take begins.
/// 2. For each frame play(), before any device is polled, hold(), when all devices were, and
///    release(), when the tool has recorded the frame.
/// 3. end().
class StoredInput {
public:
    using Values = std::vector<Util::AVar_Linear<double>>;
    /// Returns true for a tool's device whose tool runs in the take.
    using IsInTake = std::function<bool(const UniDevice::Device&)>;

    /// `inputs` are those of the tool, and outlive this object.
    explicit StoredInput(const InstanceInputs& inputs) : inputs_(inputs) {}

    /// At most one for each property, in their order; filled from saved data and by takes.
    [[nodiscard]] Values& getValues() { return *sharedValues(); }

    /// For a live take removes what is stored from `time` on, as part of the host's undo step; in a
    /// resimulation the stored values stand in for the controls, but for those of tools that run in
    /// it too: what these compute, they compute again.
    void begin(double time, TakeSource source, const IsInTake& isInTake, AdaptorInterface& host);
    /// In a resimulation puts the stored values in place.
    void play(double time);
    /// Holds the value of each property. In a live take stores them. Returns the properties with a
    /// value that isn't finite, each once a take.
    [[nodiscard]] std::vector<const UniDevice::Property*> hold(double time);
    void release() { isHeld_ = false; }
    /// Gives each property its own control back.
    void end();

private:
    const std::shared_ptr<Values>& sharedValues();
    [[nodiscard]] std::int32_t count() const { return inputs_.getProperties().count(); }
    void standIn(std::size_t index);

    const InstanceInputs& inputs_;
    // Made when it is first used. Not shared, but watched by undo entries, which may outlive the
    // tool.
    std::shared_ptr<Values> values_;
    /// A property, and what stands in for its control.
    struct Held {
        InputProperty* property = nullptr;            // not owned
        std::unique_ptr<TemporaryControl> substitute; // made when it is first used
        bool isStoodFor = false;
        bool isToldBad = false; // in this take
    };

    std::vector<Held> held_; // since begin()
    bool isHeld_ = false;
    IsInTake isInTake_; // null outside of a resimulation
    bool isLive_ = false;
};

} // namespace MVR
