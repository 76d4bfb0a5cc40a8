// The raw input of a tool's takes, which a resimulation plays again.
#pragma once

#include "instance/temporary_control.h"
#include "recording/values/animated_variable.h"
#include "recording/values/take_source.h"
#include "unidevice/sdk/property_handler.h"

#include <memory>
#include <vector>

namespace MVR {

class AdaptorInterface;

/// The values of the controls of a tool's properties, frame by frame.
///
/// 1. begin() when a take begins.
/// 2. step() for each frame, before the tool records it.
/// 3. end().
class StoredInput {
public:
    using Values = std::vector<Util::AVar_Linear<double>>;

    /// `properties` are those of the tool, and outlive this object.
    explicit StoredInput(const UniDevice::PropertyHandler& properties) : properties_(properties) {}

    /// At most one for each property, in their order; filled from saved data and by takes.
    [[nodiscard]] Values& getValues() { return *sharedValues(); }

    /// For a live take removes what is stored from `time` on, as part of the host's undo step; in a
    /// resimulation the stored values stand in for the controls.
    void begin(double time, TakeSource source, AdaptorInterface& host);
    /// Stores the values of the controls, or plays the stored ones instead.
    void step(double time);
    /// Gives each property its own control back.
    void end();

private:
    const std::shared_ptr<Values>& sharedValues();
    void store(double time);
    void play(double time);

    const UniDevice::PropertyHandler& properties_;
    // Made when it is first used. Not shared, but watched by undo entries, which may outlive the
    // tool.
    std::shared_ptr<Values> values_;
    std::vector<std::unique_ptr<TemporaryControl>> standIns_; // by property; kept for the next time
    bool isPlaying_ = false;                                  // the stand-ins are bound
};

} // namespace MVR
